#include "platform/host_path.h"

#include <algorithm>

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

std::vector<std::string_view> HostPathSteps(std::string_view path) {
  std::vector<std::string_view> steps;
  for (size_t start = 0; start <= path.size();) {
    const size_t end = std::min(path.find('/', start), path.size());
    const std::string_view step = path.substr(start, end - start);
    start = end + 1;
    if (step == ".." && !steps.empty() && steps.back() != "..") {
      steps.pop_back();
    } else if (!step.empty() && step != ".") {
      steps.push_back(step);
    }
  }
  return steps;
}

}  // namespace velkor
