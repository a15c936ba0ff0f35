#include "platform/host_path.h"

namespace velkor {
namespace {

constexpr std::string_view kSeparators = "/\\";

}  // namespace

HostPath HostPath::Folder() const {
  const size_t separator = bytes_.find_last_of("/\\:");
  return HostPath(separator == std::string::npos ? "." : bytes_.substr(0, separator + 1));
}

HostPath HostPath::Below(std::string_view name) const {
  std::string path = bytes_;
  if (!path.empty() && kSeparators.find(path.back()) == std::string_view::npos) {
    path += '\\';
  }
  path += name;
  return HostPath(std::move(path));
}

bool HostHasDrives() {
  return true;
}

}  // namespace velkor
