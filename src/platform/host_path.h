#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace velkor {

// A path name as the operating system takes it: bytes in the host's encoding, of which "/" alone
// separates, or "\" too where there are drives. It is no text of a project, and never stepped in a
// project's code page. Empty: no path. A value.
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

// Whether this host's paths have drive letters and shares, and "\" for a separator: then a path with
// a drive letter is a place of this host.
bool HostHasDrives();

}  // namespace velkor
