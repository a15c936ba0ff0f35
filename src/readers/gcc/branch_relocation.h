#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "readers/gcc/elf_file.h"

namespace velkor {

// A call or jump whose target a relocation names.
struct BranchRelocation {
  bool isJump = false;  // it leaves no return address
  int64_t addend = 0;   // the target is that far behind the relocation's symbol
};

// Whether the kinds of relocation that calls of that machine have are known here.
bool KnowsBranchesOf(uint16_t machine);

// What the relocation of a section with these bytes says, none where it is no call or jump. Data
// addresses are none, and so are the short branches that stay within a function.
std::optional<BranchRelocation> ReadBranch(const ElfFile& elf, std::string_view bytes,
                                           const ElfRelocation& relocation);

}  // namespace velkor
