#pragma once

#include <cstddef>
#include <string>

namespace velkor {

// What a large project is made of. Every top-level function but the first is the root of a small
// tree of calls; the first calls very many functions directly.
struct LargeProject {
  size_t functions = 1000000;
  size_t wideCallees = 20000;
  size_t modules = 200;   // short enough for the limit of lines of a file
  size_t treeSize = 100;  // functions of each small tree
};

// Writes the project file and the modules into the folder, which is made if need be; a project
// that is there already stays. The path of the project file.
std::string WriteLargeProject(const std::string& folder, const LargeProject& project);

}  // namespace velkor
