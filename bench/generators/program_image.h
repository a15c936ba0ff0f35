#pragma once

#include <cstdint>

#include "bench/generators/project_folder.h"

namespace velkor::bench {

// Writes program.elf, a linked program of Thumb code of so many bytes with its symbols, and beside
// it the call graph file of its main function and a velkor.toml that names both. The functions have
// frames, loops, branches, constants behind their code, and calls of functions before them, as
// those of compilers have. None of them can be executed to any purpose.
void WriteProgram(uint64_t bytes, uint64_t seed, ProjectFolder& project);

}  // namespace velkor::bench
