#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"
#include "readers/gcc/path_pattern.h"

namespace velkor {

// What a build left in a folder and below it. All paths begin with the folder as it was given, and
// are ordered by their bytes, whatever order the host lists them in.
struct FolderContents {
  std::vector<std::string> callGraphs;  // *.ci
  std::vector<std::string> objects;     // *.o, *.obj
  std::vector<std::string> unreadable;  // folders that could not be read, or not to their end
  std::vector<bool> isPatternUsed;      // of each pattern: it left something out
};

// Looks for them in the folder and all below it. Left out is what a pattern matches (by its path
// below the folder; a folder with all in it), and always folders that are hidden or hold what CMake
// and Meson try out: CMakeFiles/VERSION, CMakeScratch, meson-private. Symbolic links are followed,
// but each folder is read once, under its own name where it is below the given one too.
FolderContents SearchFolder(FileSystem& files, std::string_view folder,
                            const std::vector<PathPattern>& exclude);

}  // namespace velkor
