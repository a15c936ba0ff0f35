#include "platform/host_file_system.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "platform/host_folder.h"
#include "platform/patience.h"
#include "platform/posix/host_file.h"
#include "platform/standard_streams.h"
#include "platform/temporary_name.h"

namespace velkor {
namespace {

class HostInputFile : public InputFile {
 public:
  explicit HostInputFile(HostFile file)
      : file_(std::move(file)), length_(static_cast<uint64_t>(file_.Status().st_size)) {}

  size_t Read(char* buffer, size_t size) override {
    ssize_t count = -1;
    do {
      count = read(file_.Descriptor(), buffer, size);
    } while (count < 0 && errno == EINTR);
    return count < 0 ? 0 : static_cast<size_t>(count);
  }

  uint64_t Length() const override { return length_; }

 private:
  HostFile file_;
  const uint64_t length_;
};

class HostOutputFile : public OutputFile {
 public:
  explicit HostOutputFile(HostFile file) : file_(std::move(file)) {}

  bool Write(std::string_view bytes) override {
    while (!bytes.empty()) {
      const ssize_t count = write(file_.Descriptor(), bytes.data(), bytes.size());
      if (count < 0 && errno == EINTR) {
        continue;
      }
      if (count <= 0) {
        return false;
      }
      bytes.remove_prefix(static_cast<size_t>(count));
    }
    return true;
  }

  bool Synchronize() override {
    // A device has nothing to hand on, and says so with EINVAL.
    return fsync(file_.Descriptor()) == 0 || errno == EINVAL;
  }

  bool Close() override { return file_.Close(); }

 private:
  HostFile file_;
};

std::optional<struct stat> StatusOf(const HostPath& path) {
  struct stat status {};
  const bool found = path.IsUsable() && stat(path.Text(), &status) == 0;
  return found ? std::optional(status) : std::nullopt;
}

bool IsSame(const struct stat& left, const struct stat& right) {
  return left.st_dev == right.st_dev && left.st_ino == right.st_ino;
}

// The path names the file that is open, and not one that has been put in its place since.
bool IsAt(const HostFile& file, const HostPath& path) {
  const std::optional<struct stat> current = StatusOf(path);
  return current && IsSame(*current, file.Status());
}

// Empties a file that is open for writing and locks it; a device or pipe is used as it is.
FileFailure Take(const HostFile& file, const HostPath& path) {
  const struct stat status = file.Status();
  if (S_ISCHR(status.st_mode) || S_ISFIFO(status.st_mode)) {
    fcntl(file.Descriptor(), F_SETFL, O_WRONLY);  // wait while it is busy
    return FileFailure::kNone;
  }
  if (!S_ISREG(status.st_mode) || !file.Lock(true)) {
    return FileFailure::kOther;
  }
  // Another file may have been put in its place before the lock was there.
  const bool taken = IsAt(file, path) && ftruncate(file.Descriptor(), 0) == 0;
  return taken ? FileFailure::kNone : FileFailure::kOther;
}

// The file that a path leads to when its last component is a symbolic link, or a chain of them,
// whether or not there is something at its end.
HostPath FollowLinks(const HostPath& path) {
  constexpr int kMostLinks = 40;
  std::filesystem::path followed = path.Bytes();
  for (int i = 0; i < kMostLinks; ++i) {
    std::error_code error;
    const std::filesystem::path target = std::filesystem::read_symlink(followed, error);
    if (error) {
      break;
    }
    followed = followed.parent_path() / target;
  }
  return HostPath(followed.string());
}

// A file that takes another's place is its owner's and has its permissions. False when it cannot.
bool TakeOver(const HostPath& path, const struct stat& before) {
  constexpr mode_t kPermissions = 07777;
  const bool owned = chown(path.Text(), before.st_uid, before.st_gid) == 0;
  const mode_t set = owned ? kPermissions : 0777;
  return chmod(path.Text(), before.st_mode & set) == 0;
}

enum class Replacing {
  kDone,
  kFailed,
  kOvertaken,  // by another, who has put a file there or taken it away: to be tried again
};

// Where nothing has that name.
Replacing RenameToNew(const HostPath& from, const HostPath& to) {
  if (renameat2(AT_FDCWD, from.Text(), AT_FDCWD, to.Text(), RENAME_NOREPLACE) == 0) {
    return Replacing::kDone;
  }
  if (errno == EEXIST) {
    return Replacing::kOvertaken;
  }
  const bool unsupported = errno == EINVAL || errno == ENOSYS;
  const bool renamed = unsupported && !IsThere(to) && rename(from.Text(), to.Text()) == 0;
  return renamed ? Replacing::kDone : Replacing::kFailed;
}

void SynchronizeFolderOf(const HostPath& path) {
  const HostFile opened(path.Folder(), O_RDONLY | O_DIRECTORY);
  if (opened.IsOpen()) {
    fsync(opened.Descriptor());  // a failure cannot undo what everybody sees already
  }
}

Replacing PutInPlaceOf(HostFile old, const Patience& patience, const HostPath& from,
                       const HostPath& to, const FileSystem::MayReplace& mayReplace) {
  const struct stat oldStatus = old.Status();
  const std::optional<struct stat> status = StatusOf(from);
  if (!status || !S_ISREG(oldStatus.st_mode) || !old.Lock(true, patience)) {
    return Replacing::kFailed;
  }
  if (!IsAt(old, to)) {
    return Replacing::kOvertaken;
  }
  HostInputFile held(std::move(old));
  if ((mayReplace && !mayReplace(&held)) || !TakeOver(from, oldStatus)) {
    return Replacing::kFailed;
  }
  if (rename(from.Text(), to.Text()) != 0) {
    TakeOver(from, *status);
    return Replacing::kFailed;
  }
  return Replacing::kDone;
}

// Of an absolute path without links.
bool IsBelow(const std::filesystem::path& path, const std::filesystem::path& folder) {
  return std::mismatch(folder.begin(), folder.end(), path.begin(), path.end()).first ==
         folder.end();
}

void RemoveUnlessHeld(const HostPath& path) {
  const HostFile file(path, O_RDWR);
  if (file.IsOpen() && S_ISREG(file.Status().st_mode) && file.LockAlone() && IsAt(file, path)) {
    unlink(path.Text());
  }
}

}  // namespace

OpenResult<InputFile> HostFileSystem::OpenForRead(std::string_view path, Spelling spelling) {
  if (path == kStandardInput) {
    std::unique_ptr<InputFile> input = OpenStandardInput();
    const FileFailure failure = input != nullptr ? FileFailure::kNone : FileFailure::kOther;
    return {std::move(input), failure};
  }
  HostFile file(paths_.ToHost(path, spelling), O_RDONLY);
  if (!file.IsOpen()) {
    return {nullptr, file.Failure()};
  }
  if (!S_ISREG(file.Status().st_mode) || !file.Lock(false)) {
    return {nullptr, FileFailure::kOther};
  }
  return {std::make_unique<HostInputFile>(std::move(file)), FileFailure::kNone};
}

OpenResult<InputFile> HostFileSystem::OpenWhenFree(std::string_view path, const GiveUp& giveUp) {
  const HostPath hostPath = paths_.ToHost(path, Spelling::kExact);
  const Patience patience(patience_, giveUp);
  for (;;) {
    HostFile file(hostPath, O_RDONLY);
    if (!file.IsOpen()) {
      return {nullptr, file.Failure()};
    }
    if (!S_ISREG(file.Status().st_mode) || !file.Lock(false, patience)) {
      return {nullptr, FileFailure::kOther};
    }
    // Who held it may have put another in its place.
    if (IsAt(file, hostPath) || patience.IsOver()) {
      return {std::make_unique<HostInputFile>(std::move(file)), FileFailure::kNone};
    }
  }
}

OpenResult<OutputFile> HostFileSystem::OpenForWrite(std::string_view path) {
  if (path == kStandardOutput) {
    return {OpenStandardOutput(), FileFailure::kNone};
  }
  const HostPath hostPath = paths_.ToHost(path, Spelling::kExact);
  HostFile file(hostPath, O_WRONLY | O_CREAT);
  const FileFailure failure = file.IsOpen() ? Take(file, hostPath) : file.Failure();
  if (failure != FileFailure::kNone) {
    return {nullptr, failure};
  }
  return {std::make_unique<HostOutputFile>(std::move(file)), FileFailure::kNone};
}

bool HostFileSystem::Exists(std::string_view path, Spelling spelling) {
  return StatusOf(paths_.ToHost(path, spelling)).has_value();
}

bool HostFileSystem::IsDirectory(std::string_view path, Spelling spelling) {
  const std::optional<struct stat> status = StatusOf(paths_.ToHost(path, spelling));
  return status && S_ISDIR(status->st_mode);
}

bool HostFileSystem::IsSameFile(std::string_view path, std::string_view input) {
  const std::optional<struct stat> first = StatusOf(paths_.ToHost(path, Spelling::kExact));
  if (!first) {
    return false;
  }
  const std::optional<struct stat> second = StatusOf(paths_.ToHost(input, Spelling::kOfProject));
  return second && IsSame(*first, *second);
}

bool HostFileSystem::Replace(std::string_view from, std::string_view to,
                             const MayReplace& mayReplace, const GiveUp& giveUp) {
  const HostPath source = paths_.ToHost(from, Spelling::kExact);
  const HostPath target = FollowLinks(paths_.ToHost(to, Spelling::kExact));
  const std::optional<struct stat> status = StatusOf(source);
  if (!status || !S_ISREG(status->st_mode)) {
    return false;
  }
  const Patience patience(patience_, giveUp);
  Replacing result = Replacing::kOvertaken;
  while (result == Replacing::kOvertaken) {
    // Opened for writing: a file that its user protected is not replaced behind the protection.
    HostFile old(target, O_RDWR);
    if (old.IsOpen()) {
      result = PutInPlaceOf(std::move(old), patience, source, target, mayReplace);
    } else {
      const bool mayBeNew =
          old.Failure() == FileFailure::kNotFound && (!mayReplace || mayReplace(nullptr));
      result = mayBeNew ? RenameToNew(source, target) : Replacing::kFailed;
    }
    if (patience.IsOver()) {
      break;
    }
  }
  if (result == Replacing::kDone) {
    SynchronizeFolderOf(target);
  }
  return result == Replacing::kDone;
}

WayToWrite HostFileSystem::HowToWrite(std::string_view path) {
  if (path == kStandardOutput) {
    return WayToWrite::kDirectly;
  }
  const HostPath hostPath = paths_.ToHost(path, Spelling::kExact);
  const std::optional<struct stat> status = StatusOf(hostPath);
  const std::optional<struct stat> folder = StatusOf(hostPath.Folder());
  if (!status || !folder || !S_ISREG(status->st_mode) || status->st_dev != folder->st_dev) {
    return WayToWrite::kDirectly;
  }
  const HostFile file(hostPath, O_RDWR);
  return file.IsOpen() && file.Lock(true) ? WayToWrite::kBeside : WayToWrite::kRefused;
}

bool HostFileSystem::LeadsOutOfFolder(std::string_view path) {
  const HostPath hostPath = paths_.ToHost(path, Spelling::kExact);
  std::error_code error;
  if (!std::filesystem::is_symlink(hostPath.Bytes(), error)) {
    return false;
  }
  const auto folder = std::filesystem::canonical(hostPath.Folder().Bytes(), error);
  if (error) {
    return true;
  }
  const auto target = std::filesystem::weakly_canonical(FollowLinks(hostPath).Bytes(), error);
  return error || !IsBelow(target, folder);
}

bool HostFileSystem::TakePermissions(std::string_view path, std::string_view from) {
  const std::optional<struct stat> status = StatusOf(paths_.ToHost(from, Spelling::kExact));
  return status && TakeOver(paths_.ToHost(path, Spelling::kExact), *status);
}

void HostFileSystem::RemoveAbandoned(std::string_view path) {
  const HostPath hostPath = paths_.ToHost(path, Spelling::kExact);
  const HostPath folder = hostPath.Folder();
  const std::string name = std::filesystem::path(hostPath.Bytes()).filename().string();
  for (const FolderEntry& entry : ListHostFolder(folder).entries) {
    if (entry.kind == FolderEntry::Kind::kFile && !entry.isLink &&
        IsTemporaryOf(entry.name, name)) {
      RemoveUnlessHeld(folder.Below(entry.name));
    }
  }
}

bool HostFileSystem::Remove(std::string_view path) {
  const HostPath hostPath = paths_.ToHost(path, Spelling::kExact);
  return hostPath.IsUsable() && unlink(hostPath.Text()) == 0;
}

std::optional<int64_t> HostFileSystem::ModifiedAt(std::string_view path) {
  const std::optional<struct stat> status = StatusOf(paths_.ToHost(path, Spelling::kExact));
  if (!status) {
    return std::nullopt;
  }
  constexpr int64_t kNanoseconds = 1000000000;
  return int64_t{status->st_mtim.tv_sec} * kNanoseconds + status->st_mtim.tv_nsec;
}

FolderListing HostFileSystem::ListFolder(std::string_view path) {
  return ListHostFolder(paths_.ToHost(path, Spelling::kExact));
}

}  // namespace velkor
