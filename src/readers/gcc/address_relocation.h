#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "readers/gcc/elf_file.h"

namespace velkor {

// How far behind the start of the relocation's section the address lies that it puts into the bytes
// of its own section. The symbol is that of a section. None where that is not told: distances
// between two places, and kinds that the compiler uses with the function's own symbol alone.
std::optional<int64_t> AddressInSection(const ElfFile& elf, const ElfSection& section,
                                        const ElfRelocation& relocation);

// Whether addresses that stand in the section are those that a program uses, and not what tells
// others of its functions (call frames, landing pads).
bool HoldsUsedAddresses(const ElfSection& section);

}  // namespace velkor
