#pragma once

#include <cstdint>

#include "readers/gcc/code/a64_registers.h"
#include "readers/gcc/code/code_instruction.h"

// What instructions of AArch64 do, by their forms: each reads the fields of its encoding. Only
// these may write the stack pointer or the program counter.
namespace velkor::a64_forms {

inline constexpr uint8_t kNone = CodeInstruction::kNone;
inline constexpr uint8_t kWord = 8;
// Reads as 0, and what is written to it is lost: no register has this number.
inline constexpr uint8_t kZero = A64_REGISTERS;

inline uint64_t Bit(uint8_t number) {
  return number < 64 ? uint64_t{1} << number : 0;
}

// One encoding.
struct Encoding {
  uint32_t bits;

  uint32_t Field(unsigned first, unsigned count) const {
    return bits >> first & ((uint32_t{1} << count) - 1);
  }
  int64_t SignedField(unsigned first, unsigned count) const {
    const int64_t sign = int64_t{1} << (count - 1);
    return (int64_t{Field(first, count)} ^ sign) - sign;
  }
  bool Has(unsigned bit) const { return (bits >> bit & 1U) != 0; }
  bool IsWide() const { return Has(31); }  // registers of 64 bits, not of 32
  // The number 31 is the stack pointer in some places, nothing in others.
  uint8_t RegisterOrStack(unsigned first) const { return static_cast<uint8_t>(Field(first, 5)); }
  uint8_t Register(unsigned first) const {
    const uint8_t number = RegisterOrStack(first);
    return number == A64_SP ? kZero : number;
  }
};

// What writes these registers, of which nothing is known then.
CodeInstruction Writing(uint64_t registers);
CodeInstruction Plain(CodeOperation operation);
// Writes to memory where it is not known.
CodeInstruction WritingMemory(uint64_t registers);

// What one that is not listed does, or may do: nothing is known of it.
CodeInstruction Unknown(Encoding encoding);
CodeInstruction Nothing(Encoding encoding);
CodeInstruction WritesFirst(Encoding encoding);  // the register of the lowest bits

// Computation (a64_forms_data.cpp).
CodeInstruction Address(Encoding encoding);
CodeInstruction AddNumber(Encoding encoding);
CodeInstruction AddTag(Encoding encoding);
CodeInstruction LogicalNumber(Encoding encoding);
CodeInstruction MoveWide(Encoding encoding);
CodeInstruction BitField(Encoding encoding);
CodeInstruction Logical(Encoding encoding);
CodeInstruction AddShifted(Encoding encoding);
CodeInstruction AddExtended(Encoding encoding);
CodeInstruction AddWithCarry(Encoding encoding);
CodeInstruction FlagsOnly(Encoding encoding);
CodeInstruction TwoSources(Encoding encoding);
CodeInstruction OneSource(Encoding encoding);

// The flow, and the system (a64_forms_flow.cpp).
CodeInstruction Jump(Encoding encoding);
CodeInstruction Call(Encoding encoding);
CodeInstruction JumpIf(Encoding encoding);
CodeInstruction JumpIfZero(Encoding encoding);
CodeInstruction JumpIfBit(Encoding encoding);
CodeInstruction JumpToRegister(Encoding encoding);
CodeInstruction CallRegister(Encoding encoding);
CodeInstruction ReturnToLink(Encoding encoding);
CodeInstruction Stop(Encoding encoding);
CodeInstruction SystemCall(Encoding encoding);
CodeInstruction Break(Encoding encoding);
CodeInstruction Hint(Encoding encoding);
CodeInstruction WriteState(Encoding encoding);
CodeInstruction ChooseStack(Encoding encoding);
CodeInstruction SystemOperation(Encoding encoding);

// Memory (a64_forms_memory.cpp).
CodeInstruction LoadLiteral(Encoding encoding);
CodeInstruction Exclusive(Encoding encoding);
CodeInstruction Atomic(Encoding encoding);
CodeInstruction Pair(Encoding encoding);
CodeInstruction AtNumber(Encoding encoding);    // an unsigned distance in elements
CodeInstruction AtDistance(Encoding encoding);  // a signed one in bytes, which may change the base
CodeInstruction AtIndex(Encoding encoding);
CodeInstruction Ordered(Encoding encoding);
CodeInstruction LoadAuthenticated(Encoding encoding);
CodeInstruction CopyMemory(Encoding encoding);
CodeInstruction Tags(Encoding encoding);
CodeInstruction Structures(Encoding encoding);
CodeInstruction OneStructure(Encoding encoding);

// Vectors (a64_forms_vector.cpp).
CodeInstruction ConvertNumber(Encoding encoding);
CodeInstruction ConvertFixed(Encoding encoding);
CodeInstruction Scalable(Encoding encoding);

}  // namespace velkor::a64_forms
