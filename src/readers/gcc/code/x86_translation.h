#pragma once

#include <capstone/capstone.h>

#include "readers/gcc/code/code_instruction.h"

namespace velkor {

// An instruction of x86 as the disassembler tells it, decoded for address `origin`. Only what is
// listed here may write the stack pointer or the program counter.
CodeInstruction TranslateX86(const cs_insn& decoded, uint64_t origin);

}  // namespace velkor
