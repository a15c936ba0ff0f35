#include "platform/host_path.h"

namespace velkor {

HostPath HostPath::Folder() const {
  const size_t separator = bytes_.rfind('/');
  return HostPath(separator == std::string::npos ? "." : bytes_.substr(0, separator + 1));
}

HostPath HostPath::Below(std::string_view name) const {
  std::string path = bytes_;
  if (!path.empty() && path.back() != '/') {
    path += '/';
  }
  path += name;
  return HostPath(std::move(path));
}

bool HostHasDrives() {
  return false;
}

}  // namespace velkor
