#include "platform/host_folder.h"

#include <memory>
#include <string>
#include <string_view>
#include <windows.h>

#include "platform/windows/host_handle.h"
#include "platform/windows/host_links.h"
#include "platform/windows/wide_path.h"
#include "platform/windows/wide_text.h"

namespace velkor {
namespace {

struct CloseSearch {
  void operator()(void* search) const { FindClose(search); }
};

FolderEntry::Kind KindOf(DWORD attributes) {
  if ((attributes & FILE_ATTRIBUTE_DEVICE) != 0) {
    return FolderEntry::Kind::kOther;
  }
  return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? FolderEntry::Kind::kFolder
                                                       : FolderEntry::Kind::kFile;
}

FolderEntry EntryOf(const HostPath& folder, const WIN32_FIND_DATAW& found) {
  FolderEntry entry;
  entry.name = FromWide(found.cFileName);
  entry.isLink = IsLink(found);
  entry.kind = KindOf(found.dwFileAttributes);
  if (entry.isLink) {
    const auto facts = FactsOf(WidePath(folder.Below(entry.name)));
    entry.kind = facts ? KindOf(facts->attributes) : FolderEntry::Kind::kOther;
  }
  return entry;
}

}  // namespace

bool IsThere(const HostPath& path) {
  const std::wstring wide = WidePath(path);
  return !wide.empty() && GetFileAttributesW(wide.c_str()) != INVALID_FILE_ATTRIBUTES;
}

FolderListing ListHostFolder(const HostPath& path) {
  FolderListing listing;
  const auto facts = FactsOf(WidePath(path));
  if (!facts) {
    return listing;
  }
  listing.identity = facts->identity;
  WIN32_FIND_DATAW found{};
  void* const search = FindFirstFileExW(WidePath(path.Below("*")).c_str(), FindExInfoBasic, &found,
                                        FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH);
  if (search == INVALID_HANDLE_VALUE) {
    listing.isWhole = GetLastError() == ERROR_FILE_NOT_FOUND;  // a drive's own folder, empty
    return listing;
  }
  const std::unique_ptr<void, CloseSearch> closing(search);
  do {
    const std::wstring_view name = found.cFileName;
    if (name != L"." && name != L"..") {
      listing.entries.push_back(EntryOf(path, found));
    }
  } while (FindNextFileW(search, &found) != 0);
  listing.isWhole = GetLastError() == ERROR_NO_MORE_FILES;
  return listing;
}

}  // namespace velkor
