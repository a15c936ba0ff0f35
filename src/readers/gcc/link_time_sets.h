#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"

namespace velkor {

// Whether the name of a call graph file says that it is of a part of a program that is compiled
// while it is linked: OUT.ltrans0.ltrans.ci, OUT.lto.o-RANDOM.lto.ci.
bool IsLinkTimeGraph(std::string_view path);

struct LinkTimeSets {
  std::vector<std::string> kept;  // all other files too, in their order
  size_t oldCount = 0;
};

// Leaves out what earlier links of the same output have left: of each output only the newest set
// counts. Any order of the paths.
LinkTimeSets WithoutOldLinks(FileSystem& files, const std::vector<std::string>& callGraphs);

}  // namespace velkor
