#pragma once

#include <cstdint>

#include "bench/generators/project_folder.h"

namespace velkor::bench {

// Writes call graph files (*.ci) that look like those of real programs, until they take this many
// bytes: about as many functions as bytes / 300, static ones among them, that call functions of
// their own and of other files, library functions, and now and then through a pointer. None is
// recursive.
void WriteCallGraphSet(uint64_t bytes, uint64_t seed, ProjectFolder& project);

}  // namespace velkor::bench
