#pragma once

#include <capstone/capstone.h>

#include "readers/gcc/code/code_instruction.h"

namespace velkor {

// An instruction of ARM or Thumb as the disassembler tells it, decoded for address `origin`, which
// is a multiple of 4. Only what is listed here may write the stack pointer or the program counter.
CodeInstruction TranslateArm(const cs_insn& decoded, uint64_t origin, bool isThumb);

}  // namespace velkor
