#pragma once

#include <cstdint>

#include "bench/generators/project_folder.h"

namespace velkor::bench {

// Writes modules that look like those of real programs, until they take this many bytes: functions
// of some dozen lines of code, static ones among them, that call functions of their own and of
// other modules, runtime helpers, and now and then through a pointer. None is recursive.
void WriteModuleSet(uint64_t bytes, uint64_t seed, ProjectFolder& project);

}  // namespace velkor::bench
