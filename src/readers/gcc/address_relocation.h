#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "readers/gcc/elf_file.h"

namespace velkor {

// How far behind the start of the relocation's section the address lies that it puts into the bytes
// of its own section. The symbol is that of a section. None where that is not told: distances
// between two places, and kinds that the compiler uses with the function's own symbol alone.
std::optional<int64_t> AddressInSection(const ElfFile& elf, const ElfSection& section,
                                        const ElfRelocation& relocation);

// Places in a section of code that its own instructions take the address of without a relocation:
// on x86-64 the assembler settles that itself. Some may be none, as every byte may begin an
// instruction.
std::vector<uint64_t> OwnAddressesIn(const ElfFile& elf, const ElfSection& code);

// Whether addresses that stand in the section are those that a program uses, and not what tells
// others of its functions (call frames, landing pads) or enters them from outside (vectors).
bool HoldsUsedAddresses(const ElfSection& section);

}  // namespace velkor
