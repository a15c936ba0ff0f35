#include "readers/gcc/code/thumb_forms.h"

#include <array>
#include <bit>

#include "readers/gcc/code/arm_registers.h"

namespace velkor {
namespace {

struct Words {
  uint16_t first;
  uint16_t second;
};

using Form = CodeInstruction (*)(Words);

CodeInstruction Plain(CodeOperation operation) {
  CodeInstruction instruction;
  instruction.operation = operation;
  return instruction;
}

CodeInstruction Nothing(Words /*words*/) {
  return Plain(CodeOperation::kPadding);
}

// The mask's lowest set bit ends the block; each bit above it is the lowest one of a code.
CodeInstruction ConditionalBlock(Words words) {
  CodeInstruction instruction = Plain(CodeOperation::kOther);
  const unsigned mask = words.first & 15U;
  const unsigned first = words.first >> 4 & 15U;
  const auto count = static_cast<unsigned>(4 - std::countr_zero(mask));
  instruction.conditionalAfter = static_cast<uint8_t>(count);
  instruction.list = first;
  for (unsigned i = 1; i < count; ++i) {
    const unsigned code = (first & 14U) | (mask >> (4 - i) & 1U);
    instruction.list |= uint64_t{code} << (4 * i);
  }
  return instruction;
}

CodeInstruction CallOtherWorld(Words words) {
  CodeInstruction instruction = Plain(CodeOperation::kCallRegister);
  instruction.source = static_cast<uint8_t>(words.first >> 3 & 15);
  return instruction;
}

CodeInstruction JumpOtherWorld(Words words) {
  CodeInstruction instruction = CallOtherWorld(words);
  instruction.operation = CodeOperation::kJumpRegister;
  return instruction;
}

CodeInstruction JumpAuthenticated(Words words) {
  CodeInstruction instruction = Plain(CodeOperation::kJumpRegister);
  instruction.source = static_cast<uint8_t>(words.first & 15);
  return instruction;
}

// Clears registers; bit 15 stands for the flags.
CodeInstruction ClearMany(Words words) {
  CodeInstruction instruction = Plain(CodeOperation::kOther);
  instruction.writes = words.second & 0x5FFFU;
  instruction.setsFlags = true;
  return instruction;
}

CodeInstruction FloatingPoint(Words /*words*/) {
  CodeInstruction instruction = Plain(CodeOperation::kOther);
  instruction.usesFloatingPoint = true;
  return instruction;
}

// Loads or stores a system register.
CodeInstruction SystemRegister(Words words) {
  CodeInstruction instruction = Plain(CodeOperation::kStoreMany);
  const bool isLoad = (words.first & 0x10U) != 0;
  const bool isUp = (words.first & 0x80U) != 0;
  const bool changesFirst = (words.first & 0x100U) != 0;
  const bool changes = (words.first & 0x20U) != 0;
  const int32_t distance = (words.second & 0x7F) * (isUp ? 4 : -4);
  instruction.operation = isLoad ? CodeOperation::kLoadMany : CodeOperation::kStoreMany;
  instruction.usesFloatingPoint = true;
  instruction.memory.base = static_cast<uint8_t>(words.first & 15);
  instruction.memory.width = 4;
  instruction.memory.displacement = changesFirst ? distance : 0;
  instruction.memory.baseChange = changes ? distance : 0;
  return instruction;
}

CodeInstruction ReadSpecial(Words words) {
  CodeInstruction instruction = Plain(CodeOperation::kOther);
  const unsigned target = words.second >> 8 & 15;
  instruction.writes = uint64_t{1} << target;
  if (target == ARM_SP || target == ARM_PC) {
    instruction.operation = CodeOperation::kUnknown;
  }
  return instruction;
}

// What is written may be a stack pointer, which then is another stack.
CodeInstruction WriteSpecial(Words /*words*/) {
  return Plain(CodeOperation::kOther);
}

int64_t LoopDistance(uint16_t second) {
  return int64_t{second >> 1 & 0x3FF} * 4 + int64_t{second >> 11 & 1} * 2;
}

CodeInstruction LoopStart(Words words) {
  CodeInstruction instruction = Plain(CodeOperation::kOther);
  instruction.writes = uint64_t{1} << ARM_LR;
  if ((words.second & 0xF001U) == 0xC001U) {  // passes an empty loop; its link register is new
    instruction.operation = CodeOperation::kJump;
    instruction.condition = CodeCondition::kOther;
    instruction.immediate = 4 + LoopDistance(words.second);
  }
  return instruction;
}

CodeInstruction LoopEnd(Words words) {
  CodeInstruction instruction = Plain(CodeOperation::kJump);
  instruction.condition = CodeCondition::kOther;
  instruction.writes = uint64_t{1} << ARM_LR;
  instruction.immediate = 4 - LoopDistance(words.second);
  return instruction;
}

struct SpecialForm {
  uint16_t firstMask, first;
  uint16_t secondMask, second;
  Form form;
};

constexpr std::array kShortSpecials = {
    SpecialForm{0xFFFF, 0xBF00, 0, 0, Nothing},
    SpecialForm{0xFFFF, 0x46C0, 0, 0, Nothing},           // mov r8, r8
    SpecialForm{0xFF0F, 0xBF00, 0, 0, WriteSpecial},      // hints
    SpecialForm{0xFF00, 0xBF00, 0, 0, ConditionalBlock},  // it
    SpecialForm{0xFF87, 0x4784, 0, 0, CallOtherWorld},    // blxns
    SpecialForm{0xFF87, 0x4704, 0, 0, JumpOtherWorld},    // bxns
};

constexpr std::array kLongSpecials = {
    SpecialForm{0xFFFF, 0xE97F, 0xFFFF, 0xE97F, Nothing},            // sg
    SpecialForm{0xFFFF, 0xE89F, 0x2000, 0x0000, ClearMany},          // clrm
    SpecialForm{0xFFBF, 0xEC9F, 0x0E00, 0x0A00, FloatingPoint},      // vscclrm
    SpecialForm{0xFFE0, 0xEC20, 0xFFFF, 0x0A00, FloatingPoint},      // vlstm, vlldm
    SpecialForm{0xFE00, 0xEC00, 0x1F80, 0x0F80, SystemRegister},     // vstr, vldr
    SpecialForm{0xFFF0, 0xFB50, 0x0FF0, 0x0F10, JumpAuthenticated},  // bxaut
    SpecialForm{0xFFF0, 0xFB50, 0x0FF0, 0x0F00, WriteSpecial},       // autg
    SpecialForm{0xFFF0, 0xF3E0, 0xF000, 0x8000, ReadSpecial},        // mrs
    SpecialForm{0xFFE0, 0xF380, 0xD000, 0x8000, WriteSpecial},       // msr
    SpecialForm{0xFFFF, 0xF3AF, 0xFFFF, 0x8000, Nothing},            // nop
    SpecialForm{0xFFFF, 0xF3AF, 0xFF00, 0x8000, WriteSpecial},       // hints: pac, aut, bti
    SpecialForm{0xFFF0, 0xF040, 0xFFFF, 0xE001, LoopStart},          // dls
    SpecialForm{0xFFF0, 0xF040, 0xF001, 0xC001, LoopStart},          // wls
    SpecialForm{0xFFDF, 0xF00F, 0xF001, 0xC001, LoopEnd},            // le
};

template <size_t count>
std::optional<CodeInstruction> Find(const std::array<SpecialForm, count>& forms, Words words) {
  for (const SpecialForm& form : forms) {
    if ((words.first & form.firstMask) == form.first &&
        (words.second & form.secondMask) == form.second) {
      return form.form(words);
    }
  }
  return std::nullopt;
}

}  // namespace

bool IsLongThumb(uint16_t first) {
  return (first & 0xF800U) >= 0xE800U;
}

std::optional<CodeInstruction> SpecialThumb(uint16_t first, uint16_t second) {
  return IsLongThumb(first) ? Find(kLongSpecials, {first, second})
                            : Find(kShortSpecials, {first, 0});
}

bool IsThumbFloatingPoint(uint16_t first, uint16_t second) {
  const bool isOfUnit = (first & 0xEC00U) == 0xEC00U && (second & 0x0E00U) == 0x0A00U;
  const bool isOfVectors = (first & 0xEF00U) == 0xEF00U || (first & 0xFF10U) == 0xF900U;
  return IsLongThumb(first) && (isOfUnit || isOfVectors);
}

bool IsArmFloatingPoint(uint32_t word) {
  const bool isUnconditional = word >> 28 == 15;
  const bool isOfUnit = (word & 0x0C000000U) == 0x0C000000U &&
                        (word & 0x0F000000U) != 0x0F000000U && (word & 0xE00U) == 0xA00U;
  const bool isOfVectors =
      (word & 0xFE000000U) == 0xF2000000U || (word & 0xFF100000U) == 0xF4000000U;
  return (isOfUnit && !isUnconditional) || isOfVectors;
}

}  // namespace velkor
