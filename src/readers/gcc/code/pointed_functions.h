#pragma once

#include <cstdint>
#include <vector>

#include "readers/gcc/elf_file.h"

namespace velkor {

// Which of the functions have an address that a word of the loaded program holds: numbers,
// ascending. starts: ascending, with bit 0 for Thumb.
std::vector<uint32_t> PointedFunctions(const ElfFile& elf, const std::vector<uint64_t>& starts);

}  // namespace velkor
