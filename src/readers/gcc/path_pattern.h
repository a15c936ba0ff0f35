#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velkor {

// A pattern of relative paths, "tests/**" or "**/legacy_*.ci". "/" parts it; "*" stands for any
// characters of one component and "?" for one (of UTF-8), "**" for any number of components, none
// included; everything else stands for itself. It holds for the whole path: what lies below a
// folder that it names is for the caller to leave out. Steps "." and doubled separators count for
// nothing in both.
class PathPattern {
 public:
  explicit PathPattern(std::string_view text);

  bool Matches(std::string_view path) const;

 private:
  std::vector<std::string> components_;
};

}  // namespace velkor
