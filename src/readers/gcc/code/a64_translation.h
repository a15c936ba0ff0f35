#pragma once

#include <cstdint>

#include "readers/gcc/code/code_instruction.h"

namespace velkor {

// The instruction of AArch64 that has this encoding. Only what is listed here may write the stack
// pointer or the program counter; what is not listed at all is unknown.
CodeInstruction TranslateA64(uint32_t bits);

}  // namespace velkor
