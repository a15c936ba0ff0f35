#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <windows.h>

#include "platform/file_system.h"

namespace velkor {

// An open handle of the system, closed by its destructor. Never inherited by other programs.
class HostHandle {
 public:
  // Does not wait for anything. access, sharing, disposition, flags: those of CreateFile.
  HostHandle(const std::wstring& path, DWORD access, DWORD sharing, DWORD disposition,
             DWORD flags = 0);
  HostHandle(HostHandle&& other) noexcept
      : handle_(std::exchange(other.handle_, INVALID_HANDLE_VALUE)), error_(other.error_) {}
  HostHandle(const HostHandle&) = delete;
  HostHandle& operator=(const HostHandle&) = delete;
  HostHandle& operator=(HostHandle&&) = delete;
  ~HostHandle() { Close(); }

  bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
  HANDLE Get() const { return handle_; }
  // Why it is not open.
  FileFailure Failure() const;
  // Another holds the file in a way that shuts this one out.
  bool IsHeldByAnother() const;
  bool IsRegularFile() const;
  // False when the data may not have reached the file.
  bool Close();

 private:
  HANDLE handle_;
  DWORD error_ = ERROR_SUCCESS;
};

// What is known of a file or folder without opening its data.
struct HostFacts {
  DWORD attributes = 0;
  std::pair<uint64_t, uint64_t> identity{};  // the same under all its names; first: of the volume
  uint64_t size = 0;
  int64_t modifiedAt = 0;  // in nanoseconds since 1970

  bool IsFolder() const { return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }
};

// Of what a path leads to, links followed; none where there is no such thing.
std::optional<HostFacts> FactsOf(const std::wstring& path);
std::optional<HostFacts> FactsOf(HANDLE file);

}  // namespace velkor
