#pragma once

#include <capstone/capstone.h>
#include <cstddef>
#include <cstdint>

#include "readers/gcc/code/arm_registers.h"
#include "readers/gcc/code/code_instruction.h"

// What instructions of ARM and Thumb do, by their forms: each reads the operands that the
// disassembler tells. Only these may write the stack pointer or the program counter.
namespace velkor::arm_forms {

inline constexpr uint8_t kNone = CodeInstruction::kNone;
inline constexpr uint8_t kWord = 4;

// kNone for all but the sixteen.
uint8_t NumberOf(int capstoneRegister);
inline uint64_t Bit(uint8_t number) {
  return number < 64 ? uint64_t{1} << number : 0;
}

// The operands of one instruction, and what becomes of it.
struct Translation {
  const cs_arm& arm;
  uint64_t origin;
  bool isThumb;
  CodeInstruction result;

  const cs_arm_op& Operand(size_t i) const { return arm.operands[i]; }
  size_t Count() const { return arm.op_count; }
  size_t Last() const { return Count() == 0 ? 0 : Count() - 1; }
  bool IsRegister(size_t i) const { return i < Count() && Operand(i).type == ARM_OP_REG; }
  bool IsNumber(size_t i) const { return i < Count() && Operand(i).type == ARM_OP_IMM; }
  bool IsMemory(size_t i) const { return i < Count() && Operand(i).type == ARM_OP_MEM; }
  uint8_t Register(size_t i) const { return IsRegister(i) ? NumberOf(Operand(i).reg) : kNone; }
  int64_t Number(size_t i) const { return Operand(i).imm; }
  // Not shifted, or by a constant to the left.
  bool IsScaled(size_t i) const {
    const auto type = Operand(i).shift.type;
    return type == ARM_SFT_INVALID || (type == ARM_SFT_LSL && Operand(i).shift.value < 32);
  }
  uint8_t Scale(size_t i) const {
    return Operand(i).shift.type == ARM_SFT_LSL ? static_cast<uint8_t>(Operand(i).shift.value) : 0;
  }
  int64_t Ahead() const { return isThumb ? 4 : 8; }  // of the program counter
};

// What is written without being known. The stack pointer and the program counter are not.
void Other(Translation& t);
void JumpToRegister(Translation& t, uint8_t source);

// Computation (arm_forms_data.cpp).
void AddForm(Translation& t);
void SubtractForm(Translation& t);
void Move(Translation& t);
void MoveTop(Translation& t);
void And(Translation& t);
void ClearBits(Translation& t);
void SetBits(Translation& t);
void ShiftLeft(Translation& t);
void ShiftRight(Translation& t);
void ZeroExtendByte(Translation& t);
void ZeroExtendHalf(Translation& t);
void BitField(Translation& t);
void Compare(Translation& t);
void TestOnly(Translation& t);

// Memory (arm_forms_memory.cpp).
void CheckBase(Translation& t);
void LoadWord(Translation& t);
void LoadByte(Translation& t);
void LoadHalf(Translation& t);
void LoadSignedByte(Translation& t);
void LoadSignedHalf(Translation& t);
void StoreWord(Translation& t);
void StoreHalf(Translation& t);
void StoreByte(Translation& t);
void LoadTwo(Translation& t);
void StoreTwo(Translation& t);
void Push(Translation& t);
void Pop(Translation& t);
void LoadUp(Translation& t);
void LoadUpBefore(Translation& t);
void LoadDown(Translation& t);
void LoadDownBefore(Translation& t);
void StoreUp(Translation& t);
void StoreUpBefore(Translation& t);
void StoreDown(Translation& t);
void StoreDownBefore(Translation& t);
void VectorPush(Translation& t);
void VectorPop(Translation& t);
void VectorStoreUp(Translation& t);
void VectorStoreDown(Translation& t);
void VectorLoadUp(Translation& t);
void VectorLoadDown(Translation& t);

}  // namespace velkor::arm_forms
