#pragma once

#include <capstone/capstone.h>
#include <cstddef>
#include <cstdint>

#include "readers/gcc/code/code_instruction.h"
#include "readers/gcc/code/x86_registers.h"

// What instructions of x86 do, by their forms: each reads the operands that the disassembler tells.
namespace velkor::x86_forms {

inline constexpr uint8_t kNone = CodeInstruction::kNone;
inline constexpr uint8_t kWord = 8;

// Of the whole register that it is a part of; kNone for all but the sixteen.
uint8_t NumberOf(x86_reg capstoneRegister);
// The second byte of a register.
bool IsHighByte(x86_reg capstoneRegister);
inline uint64_t Bit(uint8_t number) {
  return number < 64 ? uint64_t{1} << number : 0;
}

// One instruction, and what becomes of it.
struct Translation {
  const cs_insn& decoded;
  const cs_x86& x86;
  uint64_t origin;
  CodeInstruction result;

  size_t Count() const { return x86.op_count; }
  const cs_x86_op& Operand(size_t i) const { return x86.operands[i]; }
  bool IsRegister(size_t i) const { return i < Count() && Operand(i).type == X86_OP_REG; }
  bool IsNumber(size_t i) const { return i < Count() && Operand(i).type == X86_OP_IMM; }
  bool IsMemory(size_t i) const { return i < Count() && Operand(i).type == X86_OP_MEM; }
  uint8_t Register(size_t i) const { return IsRegister(i) ? NumberOf(Operand(i).reg) : kNone; }
  int64_t Number(size_t i) const { return Operand(i).imm; }
  uint8_t Size(size_t i) const { return i < Count() ? Operand(i).size : uint8_t{0}; }
  // A register of 64 bits, or of 32, whose upper half becomes 0.
  bool IsWide(size_t i) const { return Register(i) != kNone && Size(i) == kWord; }
  bool IsHalf(size_t i) const { return Register(i) != kNone && Size(i) == 4; }
};

// What is written without being known. The stack pointer and the program counter are not.
void Other(Translation& t);
void TakeMemory(Translation& t, size_t i);

void Move(Translation& t);
void MoveZero(Translation& t);
void MoveSign(Translation& t);
void ExtendAccumulator(Translation& t);
void LoadAddress(Translation& t);
void Add(Translation& t);
void Subtract(Translation& t);
void And(Translation& t);
void ExclusiveOr(Translation& t);
void ShiftLeft(Translation& t);
void ShiftRight(Translation& t);
void Push(Translation& t);
void Pop(Translation& t);
void PushFlags(Translation& t);
void PopFlags(Translation& t);
void Leave(Translation& t);
void Compare(Translation& t);

}  // namespace velkor::x86_forms
