#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velkor {

// A path name as the operating system takes it: bytes of its own, of which "/" alone separates. It
// is no text of a project, and never stepped in a project's code page. Empty: no path. A value.
class HostPath {
 public:
  HostPath() = default;
  explicit HostPath(std::string bytes) : bytes_(std::move(bytes)) {}

  const std::string& Bytes() const { return bytes_; }
  // No file can have a name with a zero byte; to the system's functions it would end there.
  const char* Text() const { return bytes_.c_str(); }
  bool IsUsable() const { return bytes_.find('\0') == std::string::npos; }
  // The folder that holds it; "." for a name alone.
  HostPath Folder() const;
  // A name below this folder; below the current one where this is empty.
  HostPath Below(std::string_view name) const;

  bool operator==(const HostPath&) const = default;

 private:
  std::string bytes_;
};

// The names in the bytes of a host path: without ".", and without ".." as far as a name before it
// stands for the folder that it leads back from. Refers to the path.
std::vector<std::string_view> HostPathSteps(std::string_view path);

}  // namespace velkor
