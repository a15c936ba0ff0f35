#pragma once

#include <cstdint>
#include <optional>

#include "readers/gcc/code/code_instruction.h"

namespace velkor {

// Whether an instruction of Thumb that begins with that half word has a second one.
bool IsLongThumb(uint16_t first);

// Instructions that the disassembler takes for others, does not know, or would carry over to those
// that follow. None: it knows this one. second: 0 for short ones.
std::optional<CodeInstruction> SpecialThumb(uint16_t first, uint16_t second);

// Whether the encoding is one of the floating-point unit or of vectors.
bool IsThumbFloatingPoint(uint16_t first, uint16_t second);
bool IsArmFloatingPoint(uint32_t word);

}  // namespace velkor
