#include "platform/windows/host_links.h"

#include "platform/windows/host_handle.h"
#include "platform/windows/wide_path.h"

namespace velkor {

bool IsLink(const WIN32_FIND_DATAW& found) {
  return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
         (found.dwReserved0 == IO_REPARSE_TAG_SYMLINK ||
          found.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT);
}

bool IsLink(const std::wstring& path) {
  WIN32_FIND_DATAW found{};
  const HANDLE search = FindFirstFileW(path.c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) {
    return false;
  }
  FindClose(search);
  return IsLink(found);
}

std::optional<std::wstring> FinalPath(const std::wstring& path) {
  const HostHandle file(path, FILE_READ_ATTRIBUTES,
                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, OPEN_EXISTING,
                        FILE_FLAG_BACKUP_SEMANTICS);
  if (!file.IsOpen()) {
    return std::nullopt;
  }
  std::wstring final = WideResult([&](wchar_t* buffer, unsigned size) {
    return GetFinalPathNameByHandleW(file.Get(), buffer, size, FILE_NAME_NORMALIZED);
  });
  return final.empty() ? std::nullopt : std::optional(std::move(final));
}

std::wstring FollowLinks(const std::wstring& path) {
  return IsLink(path) ? FinalPath(path).value_or(path) : path;
}

}  // namespace velkor
