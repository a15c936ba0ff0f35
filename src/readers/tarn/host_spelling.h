#pragma once

#include <optional>
#include <string>
#include <utility>

#include "platform/host.h"

namespace velkor {

// A path that begins with "/" is spelt with "/" throughout; joining leaves a "\" in it. Every
// other path, and one that the host cannot resolve, stays as it is.
inline std::string HostSpelling(std::string path, const Host& host) {
  if (path.empty() || path.front() != '/') {
    return path;
  }
  std::optional<std::string> full = host.paths.FullPathName(path);
  return full ? *std::move(full) : path;
}

}  // namespace velkor
