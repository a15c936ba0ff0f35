#include "platform/windows/host_handle.h"

namespace velkor {
namespace {

uint64_t Both(DWORD high, DWORD low) {
  return (uint64_t{high} << 32) | low;
}

int64_t Nanoseconds(const FILETIME& time) {
  constexpr int64_t kUntil1970 = 116444736000000000;  // in the units of the file system
  constexpr int64_t kUnit = 100;
  return (static_cast<int64_t>(Both(time.dwHighDateTime, time.dwLowDateTime)) - kUntil1970) * kUnit;
}

}  // namespace

HostHandle::HostHandle(const std::wstring& path, DWORD access, DWORD sharing, DWORD disposition,
                       DWORD flags)
    : handle_(path.empty() ? INVALID_HANDLE_VALUE
                           : CreateFileW(path.c_str(), access, sharing, nullptr, disposition,
                                         FILE_ATTRIBUTE_NORMAL | flags, nullptr)) {
  error_ = IsOpen() ? ERROR_SUCCESS : path.empty() ? ERROR_INVALID_NAME : GetLastError();
}

FileFailure HostHandle::Failure() const {
  switch (error_) {
    case ERROR_SUCCESS:
      return FileFailure::kNone;
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
      return FileFailure::kNotFound;
    default:
      return FileFailure::kOther;
  }
}

bool HostHandle::IsHeldByAnother() const {
  return error_ == ERROR_SHARING_VIOLATION || error_ == ERROR_LOCK_VIOLATION;
}

bool HostHandle::IsRegularFile() const {
  return IsOpen() && GetFileType(handle_) == FILE_TYPE_DISK;
}

bool HostHandle::Close() {
  const HANDLE handle = std::exchange(handle_, INVALID_HANDLE_VALUE);
  return handle == INVALID_HANDLE_VALUE || CloseHandle(handle) != 0;
}

std::optional<HostFacts> FactsOf(const std::wstring& path) {
  const HostHandle handle(path, FILE_READ_ATTRIBUTES,
                          FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, OPEN_EXISTING,
                          FILE_FLAG_BACKUP_SEMANTICS);
  return handle.IsOpen() ? FactsOf(handle.Get()) : std::nullopt;
}

std::optional<HostFacts> FactsOf(HANDLE file) {
  BY_HANDLE_FILE_INFORMATION found{};
  if (GetFileInformationByHandle(file, &found) == 0) {
    return std::nullopt;
  }
  return HostFacts{
      .attributes = found.dwFileAttributes,
      .identity = {found.dwVolumeSerialNumber, Both(found.nFileIndexHigh, found.nFileIndexLow)},
      .size = Both(found.nFileSizeHigh, found.nFileSizeLow),
      .modifiedAt = Nanoseconds(found.ftLastWriteTime)};
}

}  // namespace velkor
