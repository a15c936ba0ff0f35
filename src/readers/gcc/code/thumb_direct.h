#pragma once

#include <cstdint>
#include <optional>

#include "readers/gcc/code/code_instruction.h"

namespace velkor {

// What the most frequent instructions of Thumb are, read from their encodings: the disassembler
// takes a hundred times as long. Tells the same as it does; nothing of all other instructions.
// second: 0 for short ones.
std::optional<CodeInstruction> DirectThumb(uint16_t first, uint16_t second);

}  // namespace velkor
