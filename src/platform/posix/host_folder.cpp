#include "platform/host_folder.h"

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <sys/stat.h>

namespace velkor {
namespace {

struct CloseHostFolder {
  void operator()(DIR* folder) const { closedir(folder); }
};

FolderEntry::Kind KindOf(mode_t mode) {
  if (S_ISDIR(mode)) {
    return FolderEntry::Kind::kFolder;
  }
  return S_ISREG(mode) ? FolderEntry::Kind::kFile : FolderEntry::Kind::kOther;
}

// The listing knows most kinds itself; links, and all on some file systems, are asked for.
FolderEntry EntryOf(int folder, const dirent& found) {
  FolderEntry entry;
  entry.name = found.d_name;
  unsigned char type = found.d_type;
  struct stat status {};
  if (type == DT_UNKNOWN && fstatat(folder, found.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
      S_ISLNK(status.st_mode)) {
    type = DT_LNK;
  }
  entry.isLink = type == DT_LNK;
  if (type == DT_REG || type == DT_DIR) {
    entry.kind = type == DT_DIR ? FolderEntry::Kind::kFolder : FolderEntry::Kind::kFile;
  } else if (fstatat(folder, found.d_name, &status, 0) == 0) {
    entry.kind = KindOf(status.st_mode);
  }
  return entry;
}

}  // namespace

bool IsThere(const HostPath& path) {
  struct stat status {};
  return path.IsUsable() && lstat(path.Text(), &status) == 0;
}

FolderListing ListHostFolder(const HostPath& path) {
  FolderListing listing;
  const std::unique_ptr<DIR, CloseHostFolder> folder(path.IsUsable() ? opendir(path.Text())
                                                                     : nullptr);
  struct stat status {};
  if (!folder || fstat(dirfd(folder.get()), &status) != 0) {
    return listing;
  }
  listing.identity = {status.st_dev, status.st_ino};
  errno = 0;
  // No other thread sees this listing.
  // cppcheck-suppress readdirCalled
  // NOLINTNEXTLINE(concurrency-mt-unsafe)
  while (const dirent* const found = readdir(folder.get())) {
    const std::string_view name = found->d_name;
    if (name != "." && name != "..") {
      listing.entries.push_back(EntryOf(dirfd(folder.get()), *found));
    }
    errno = 0;
  }
  listing.isWhole = errno == 0;
  return listing;
}

}  // namespace velkor
