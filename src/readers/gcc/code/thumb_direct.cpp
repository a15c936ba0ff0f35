#include "readers/gcc/code/thumb_direct.h"

#include <bit>

#include "readers/gcc/code/arm_registers.h"
#include "readers/gcc/code/thumb_forms.h"

namespace velkor {
namespace {

using Operation = CodeOperation;

constexpr int64_t kThumbAhead = 4;  // of the program counter

int64_t Signed(uint32_t bits, unsigned count) {
  const int64_t sign = int64_t{1} << (count - 1);
  return (int64_t{bits} ^ sign) - sign;
}

CodeInstruction Branch(Operation operation, int64_t distance) {
  CodeInstruction instruction;
  instruction.operation = operation;
  instruction.immediate = distance + kThumbAhead;
  return instruction;
}

// b and bl: two bits of the distance are kept inverted where it is positive.
CodeInstruction FarBranch(Operation operation, uint32_t first, uint32_t second) {
  const uint32_t sign = first >> 10 & 1U;
  const uint32_t high = ~(second >> 13 ^ sign) & 1U;
  const uint32_t low = ~(second >> 11 ^ sign) & 1U;
  const uint32_t bits =
      sign << 24 | high << 23 | low << 22 | (first & 0x3FFU) << 12 | (second & 0x7FFU) << 1;
  return Branch(operation, Signed(bits, 25));
}

std::optional<CodeInstruction> DirectLong(uint32_t first, uint32_t second) {
  constexpr uint32_t kCallBits = 0xD000;
  constexpr uint32_t kJumpBits = 0x9000;
  if ((first & 0xF800U) != 0xF000U) {
    return std::nullopt;
  }
  if ((second & 0xD000U) == kCallBits) {
    return FarBranch(Operation::kCall, first, second);
  }
  if ((second & 0xD000U) == kJumpBits) {
    return FarBranch(Operation::kJump, first, second);
  }
  return std::nullopt;
}

}  // namespace

std::optional<CodeInstruction> DirectThumb(uint16_t first, uint16_t second) {
  return IsLongThumb(first) ? DirectLong(first, second) : std::nullopt;
}

}  // namespace velkor
