#pragma once

#include <string>

#include "readers/gcc/elf_file.h"

namespace velkor {

// What a program or object was built for, as far as the pushes of its hardware depend on it:
// "cortex-m0" for all of ARMv6-M, "cortex-m3", "cortex-m4" or "cortex-m4f" (which uses
// floating-point registers), "cortex-m23", "cortex-m33", "cortex-m33f", "cortex-m55",
// "cortex-m55f", "rv32imac" (extensions of one letter), "avr", "aarch64", "x86-64". Empty: not
// told. Any bytes may be given.
std::string TargetOf(const ElfFile& elf);

}  // namespace velkor
