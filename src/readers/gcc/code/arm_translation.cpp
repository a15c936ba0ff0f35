#include "readers/gcc/code/arm_translation.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <optional>
#include <unordered_map>

#include "readers/gcc/code/arm_registers.h"

namespace velkor {
namespace {

constexpr uint8_t kNone = CodeInstruction::kNone;
constexpr uint8_t kWord = 4;

uint8_t NumberOf(int capstoneRegister) {
  switch (capstoneRegister) {
    case ARM_REG_SP:
      return ARM_SP;
    case ARM_REG_LR:
      return ARM_LR;
    case ARM_REG_PC:
      return ARM_PC;
    default:
      return capstoneRegister >= ARM_REG_R0 && capstoneRegister <= ARM_REG_R12
                 ? static_cast<uint8_t>(capstoneRegister - ARM_REG_R0)
                 : kNone;
  }
}

uint64_t Bit(uint8_t number) {
  return number == kNone ? 0 : uint64_t{1} << number;
}

CodeCondition ConditionOf(arm_cc condition) {
  switch (condition) {
    case ARM_CC_INVALID:
    case ARM_CC_AL:
      return CodeCondition::kAlways;
    case ARM_CC_EQ:
      return CodeCondition::kEqual;
    case ARM_CC_NE:
      return CodeCondition::kNotEqual;
    case ARM_CC_HI:
      return CodeCondition::kHigher;
    case ARM_CC_HS:
      return CodeCondition::kHigherSame;
    case ARM_CC_LO:
      return CodeCondition::kLower;
    case ARM_CC_LS:
      return CodeCondition::kLowerSame;
    default:
      return CodeCondition::kOther;
  }
}

// The operands of one instruction, and what becomes of it.
struct Translation {
  const cs_arm& arm;
  uint64_t origin;
  bool isThumb;
  CodeInstruction result;

  const cs_arm_op& Operand(size_t i) const { return arm.operands[i]; }
  size_t Count() const { return arm.op_count; }
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

using Form = void (*)(Translation&);

// What is written without being known. The stack pointer and the program counter are not.
void Other(Translation& t) {
  uint64_t writes = 0;
  for (size_t i = 0; i < t.Count(); ++i) {
    const bool isWritten = (t.Operand(i).access & CS_AC_WRITE) != 0 || i == 0;
    if (t.IsRegister(i) && isWritten) {
      writes |= Bit(t.Register(i));
    } else if (t.IsMemory(i) && t.arm.writeback) {
      writes |= Bit(NumberOf(static_cast<int>(t.Operand(i).mem.base)));
    }
  }
  const bool isKnown = (writes & (Bit(ARM_SP) | Bit(ARM_PC))) == 0;
  t.result.operation = isKnown ? CodeOperation::kOther : CodeOperation::kUnknown;
  t.result.writes = writes;
}

void Nothing(Translation& t) {
  t.result.operation = CodeOperation::kOther;
}

void SystemCall(Translation& t) {
  t.result.operation = CodeOperation::kSystemCall;
}

void Stop(Translation& t) {
  t.result.operation = CodeOperation::kStop;
}

void JumpToRegister(Translation& t, uint8_t source) {
  t.result.operation = CodeOperation::kJumpRegister;
  t.result.source = source;
}

// add and sub: of two operands (the first is a source too) or three.
void Add(Translation& t, int sign) {
  const size_t last = t.Count() - 1;
  const size_t first = t.Count() == 2 ? 0 : 1;
  CodeInstruction& result = t.result;
  result.target = t.Register(0);
  result.source = t.Register(first);
  if (result.target == kNone || result.source == kNone) {
    return Other(t);
  }
  if (result.target == ARM_PC) {
    // An exception's return, or a table of jumps.
    const bool isReturn = t.IsNumber(last) && result.source == ARM_LR;
    return JumpToRegister(t, isReturn ? uint8_t{ARM_LR} : kNone);
  }
  if (t.IsNumber(last)) {
    result.immediate = sign * t.Number(last);
    result.operation = CodeOperation::kAdd;
    if (result.source == ARM_PC) {
      result.operation = CodeOperation::kSetAddress;
      result.shift = 2;
      result.immediate += t.Ahead();
    }
    return;
  }
  if (result.source == ARM_PC || t.Register(last) == ARM_PC) {
    return Other(t);
  }
  const bool isScaled = t.IsRegister(last) && t.IsScaled(last);
  result.operation = isScaled && sign > 0 ? CodeOperation::kAddScaled : CodeOperation::kSubtract;
  result.index = isScaled ? t.Register(last) : kNone;
  result.shift = t.Scale(last);
}

void AddForm(Translation& t) {
  Add(t, 1);
}

void SubtractForm(Translation& t) {
  Add(t, -1);
}

void Move(Translation& t) {
  CodeInstruction& result = t.result;
  result.target = t.Register(0);
  if (t.IsNumber(1)) {
    result.operation = CodeOperation::kSet;
    result.immediate = t.Number(1) & UINT32_MAX;
  } else if (result.target == ARM_PC) {
    const bool isPlain = t.Operand(1).shift.type == ARM_SFT_INVALID;
    return JumpToRegister(t, isPlain ? t.Register(1) : kNone);
  } else if (t.IsRegister(1) && t.Register(1) != ARM_PC && t.IsScaled(1)) {
    result.source = t.Register(1);
    result.shift = t.Scale(1);
    result.operation = result.shift != 0 ? CodeOperation::kShiftLeft : CodeOperation::kCopy;
  }
  if (result.operation == CodeOperation::kUnknown || result.target == ARM_PC) {
    Other(t);
  }
}

void MoveTop(Translation& t) {
  t.result.operation = CodeOperation::kSetPart;
  t.result.target = t.Register(0);
  t.result.shift = 16;
  t.result.immediate = t.Number(1);
}

// Register, register (left out where it is the same), number.
bool TakeRegistersAndNumber(Translation& t) {
  const size_t last = t.Count() - 1;
  t.result.target = t.Register(0);
  t.result.source = t.Register(t.Count() == 2 ? 0 : 1);
  const bool isTaken = t.IsNumber(last) && t.result.target != kNone && t.result.target != ARM_PC &&
                       t.result.source != kNone;
  if (isTaken) {
    t.result.immediate = t.Number(last) & UINT32_MAX;
  } else {
    Other(t);
  }
  return isTaken;
}

void And(Translation& t) {
  if (TakeRegistersAndNumber(t)) {
    t.result.operation = CodeOperation::kMask;
  }
}

void ClearBits(Translation& t) {
  if (TakeRegistersAndNumber(t)) {
    t.result.operation = CodeOperation::kMask;
    t.result.immediate = ~t.result.immediate & UINT32_MAX;
  }
}

void SetBits(Translation& t) {
  if (TakeRegistersAndNumber(t)) {
    t.result.operation = CodeOperation::kSetBits;
  }
}

void ShiftLeft(Translation& t) {
  if (TakeRegistersAndNumber(t)) {
    t.result.operation = CodeOperation::kShiftLeft;
    t.result.shift = static_cast<uint8_t>(t.result.immediate & 31);
  }
}

void ShiftRight(Translation& t) {
  if (TakeRegistersAndNumber(t)) {
    t.result.operation = CodeOperation::kShiftRight;
    t.result.shift = static_cast<uint8_t>(t.result.immediate & 31);
  }
}

void ZeroExtend(Translation& t, int64_t mask) {
  const size_t last = t.Count() - 1;
  if (t.Operand(last).shift.type != ARM_SFT_INVALID || t.Register(last) == kNone ||
      t.Register(0) == ARM_PC) {
    return Other(t);
  }
  t.result.operation = CodeOperation::kLimit;
  t.result.target = t.Register(0);
  t.result.source = t.Register(last);
  t.result.immediate = mask;
}

void ZeroExtendByte(Translation& t) {
  ZeroExtend(t, 0xFF);
}

void ZeroExtendHalf(Translation& t) {
  ZeroExtend(t, 0xFFFF);
}

void BitField(Translation& t) {
  Other(t);
  const bool isLimit = t.Count() == 4 && t.IsNumber(3) && t.Number(3) > 0 && t.Number(3) < 32;
  if (t.result.operation == CodeOperation::kOther && isLimit && t.Register(0) != kNone) {
    t.result.operation = CodeOperation::kLimit;
    t.result.target = t.Register(0);
    t.result.source = t.Number(2) == 0 ? t.Register(1) : kNone;
    t.result.immediate = (int64_t{1} << t.Number(3)) - 1;
    t.result.writes = 0;
  }
}

void Compare(Translation& t) {
  t.result.operation = CodeOperation::kCompare;
  t.result.source = t.Register(0);
  if (t.IsNumber(1)) {
    t.result.immediate = t.Number(1) & UINT32_MAX;
  } else if (t.IsRegister(1) && t.Operand(1).shift.type == ARM_SFT_INVALID) {
    t.result.index = t.Register(1);
  } else {
    t.result.operation = CodeOperation::kOther;
  }
}

void TestOnly(Translation& t) {
  t.result.operation = CodeOperation::kOther;
}

// Of the operand at i and a number that may follow it. A base that changes by what is not known
// goes into `writes`.
void TakeMemory(Translation& t, size_t i, uint8_t width) {
  const cs_arm_op& operand = t.Operand(i);
  CodeMemory& memory = t.result.memory;
  memory.width = width;
  memory.base = NumberOf(static_cast<int>(operand.mem.base));
  memory.index = NumberOf(static_cast<int>(operand.mem.index));
  memory.displacement = operand.mem.disp;
  memory.shift = t.Scale(i);
  const bool isOddIndex =
      memory.index != kNone && (operand.mem.scale < 0 || !t.IsScaled(i) || operand.subtracted);
  if (memory.base == ARM_PC) {
    memory.base = CodeMemory::kHere;
    memory.displacement += static_cast<int32_t>(t.Ahead());
    memory.shift = memory.index == kNone ? 2 : memory.shift;
  }
  if (t.arm.writeback) {
    const bool isAfter = i + 1 < t.Count();
    if (isAfter && t.IsNumber(i + 1)) {
      const auto change = static_cast<int32_t>(t.Number(i + 1));
      memory.baseChange = t.Operand(i + 1).subtracted ? -std::abs(change) : change;
    } else if (isAfter || memory.index != kNone) {
      t.result.writes |= Bit(memory.base);
    } else {
      memory.baseChange = memory.displacement;
    }
  }
  if (isOddIndex) {
    memory.base = kNone;
    memory.index = kNone;
  }
}

// A stack pointer that changes by what is not known is no form.
void CheckBase(Translation& t) {
  const uint64_t bad = Bit(ARM_SP) | Bit(ARM_PC);
  if ((t.result.writes & bad) != 0) {
    t.result.operation = CodeOperation::kUnknown;
  }
}

void Load(Translation& t, uint8_t width, bool isSigned) {
  if (!t.IsMemory(1)) {
    return Other(t);
  }
  TakeMemory(t, 1, width);
  t.result.memory.isSigned = isSigned;
  t.result.target = t.Register(0);
  t.result.operation = CodeOperation::kLoad;
  if (t.result.target == ARM_PC) {
    t.result.operation = width == kWord ? CodeOperation::kJumpMemory : CodeOperation::kUnknown;
    t.result.target = kNone;
  }
  CheckBase(t);
}

void LoadWord(Translation& t) {
  Load(t, 4, false);
}
void LoadByte(Translation& t) {
  Load(t, 1, false);
}
void LoadHalf(Translation& t) {
  Load(t, 2, false);
}
void LoadSignedByte(Translation& t) {
  Load(t, 1, true);
}
void LoadSignedHalf(Translation& t) {
  Load(t, 2, true);
}

void Store(Translation& t, uint8_t width) {
  if (!t.IsMemory(1)) {
    return Other(t);
  }
  TakeMemory(t, 1, width);
  t.result.source = t.Register(0);
  t.result.operation = CodeOperation::kStore;
  CheckBase(t);
}

void StoreWord(Translation& t) {
  Store(t, 4);
}
void StoreHalf(Translation& t) {
  Store(t, 2);
}
void StoreByte(Translation& t) {
  Store(t, 1);
}

void LoadTwo(Translation& t) {
  if (!t.IsMemory(2)) {
    return Other(t);
  }
  TakeMemory(t, 2, kWord);
  t.result.target = t.Register(0);
  t.result.target2 = t.Register(1);
  t.result.operation = CodeOperation::kLoad;
  const uint64_t targets = Bit(t.result.target) | Bit(t.result.target2);
  if ((targets & (Bit(ARM_SP) | Bit(ARM_PC))) != 0) {
    t.result.operation = CodeOperation::kUnknown;
  }
  CheckBase(t);
}

void StoreTwo(Translation& t) {
  if (!t.IsMemory(2)) {
    return Other(t);
  }
  TakeMemory(t, 2, kWord);
  t.result.source = t.Register(0);
  t.result.index = t.Register(1);
  t.result.operation = CodeOperation::kStore;
  CheckBase(t);
}

// first: the first operand of the list. size: bytes of all.
void TakeList(Translation& t, size_t first) {
  for (size_t i = first; i < t.Count(); ++i) {
    t.result.list |= Bit(t.Register(i));
  }
  t.result.memory.width = kWord;
}

int32_t ListBytes(const Translation& t) {
  return 4 * std::popcount(t.result.list);
}

void Push(Translation& t) {
  TakeList(t, 0);
  t.result.operation = CodeOperation::kStoreMany;
  t.result.memory.base = ARM_SP;
  t.result.memory.displacement = -ListBytes(t);
  t.result.memory.baseChange = -ListBytes(t);
}

void Pop(Translation& t) {
  TakeList(t, 0);
  t.result.operation = CodeOperation::kLoadMany;
  t.result.memory.base = ARM_SP;
  t.result.memory.baseChange = ListBytes(t);
}

void Many(Translation& t, CodeOperation operation, bool isDown, bool isBefore) {
  TakeList(t, 1);
  const int32_t bytes = ListBytes(t);
  t.result.operation = operation;
  t.result.memory.base = t.Register(0);
  t.result.memory.displacement = isDown ? -bytes + (isBefore ? 0 : 4) : (isBefore ? 4 : 0);
  if (t.arm.writeback) {
    t.result.memory.baseChange = isDown ? -bytes : bytes;
  }
}

void LoadUp(Translation& t) {
  Many(t, CodeOperation::kLoadMany, false, false);
}
void LoadUpBefore(Translation& t) {
  Many(t, CodeOperation::kLoadMany, false, true);
}
void LoadDown(Translation& t) {
  Many(t, CodeOperation::kLoadMany, true, false);
}
void LoadDownBefore(Translation& t) {
  Many(t, CodeOperation::kLoadMany, true, true);
}
void StoreUp(Translation& t) {
  Many(t, CodeOperation::kStoreMany, false, false);
}
void StoreUpBefore(Translation& t) {
  Many(t, CodeOperation::kStoreMany, false, true);
}
void StoreDown(Translation& t) {
  Many(t, CodeOperation::kStoreMany, true, false);
}
void StoreDownBefore(Translation& t) {
  Many(t, CodeOperation::kStoreMany, true, true);
}

// Registers of the floating-point unit: none is followed, but where they go.
int32_t VectorBytes(const Translation& t, size_t first) {
  int32_t bytes = 0;
  for (size_t i = first; i < t.Count(); ++i) {
    const int number = t.IsRegister(i) ? t.Operand(i).reg : 0;
    bytes += number >= ARM_REG_S0 && number <= ARM_REG_S31 ? 4 : 8;
  }
  return bytes;
}

void VectorMany(Translation& t, CodeOperation operation, uint8_t base, size_t first, bool isDown) {
  const int32_t bytes = VectorBytes(t, first);
  t.result.operation = operation;
  t.result.memory.base = base;
  t.result.memory.width = static_cast<uint8_t>(std::min(bytes, 255));
  t.result.memory.displacement = isDown ? -bytes : 0;
  if (first == 0 || t.arm.writeback) {
    t.result.memory.baseChange = isDown ? -bytes : bytes;
  }
}

void VectorPush(Translation& t) {
  VectorMany(t, CodeOperation::kStoreMany, ARM_SP, 0, true);
}
void VectorPop(Translation& t) {
  VectorMany(t, CodeOperation::kLoadMany, ARM_SP, 0, false);
}
void VectorStoreUp(Translation& t) {
  VectorMany(t, CodeOperation::kStoreMany, t.Register(0), 1, false);
}
void VectorStoreDown(Translation& t) {
  VectorMany(t, CodeOperation::kStoreMany, t.Register(0), 1, true);
}
void VectorLoadUp(Translation& t) {
  VectorMany(t, CodeOperation::kLoadMany, t.Register(0), 1, false);
}
void VectorLoadDown(Translation& t) {
  VectorMany(t, CodeOperation::kLoadMany, t.Register(0), 1, true);
}

void Jump(Translation& t) {
  t.result.operation = CodeOperation::kJump;
  t.result.immediate = static_cast<int32_t>(t.Number(0)) - static_cast<int64_t>(t.origin);
}

void JumpIfZero(Translation& t) {
  t.result.operation = CodeOperation::kJump;
  t.result.condition = CodeCondition::kOther;
  t.result.immediate = static_cast<int32_t>(t.Number(1)) - static_cast<int64_t>(t.origin);
}

void Call(Translation& t) {
  Jump(t);
  t.result.operation = CodeOperation::kCall;
}

void CallAndSwitch(Translation& t) {
  if (t.IsRegister(0)) {
    t.result.operation = CodeOperation::kCallRegister;
    t.result.source = t.Register(0);
    return;
  }
  Call(t);
  t.result.switchesState = true;
}

// In ARM's own instructions the register may be the program counter: a change to Thumb.
void JumpExchange(Translation& t) {
  if (t.Register(0) == ARM_PC) {
    t.result.operation = CodeOperation::kJump;
    t.result.switchesState = t.isThumb;
    t.result.immediate = t.Ahead();
    return;
  }
  JumpToRegister(t, t.Register(0));
}

void TableJump(Translation& t, uint8_t width) {
  const arm_op_mem& memory = t.Operand(0).mem;
  t.result.index = NumberOf(static_cast<int>(memory.index));
  t.result.width = width;
  const bool isBehind = NumberOf(static_cast<int>(memory.base)) == ARM_PC;
  t.result.operation = isBehind ? CodeOperation::kJumpTable : CodeOperation::kJumpRegister;
}

void TableOfBytes(Translation& t) {
  TableJump(t, 1);
}
void TableOfHalves(Translation& t) {
  TableJump(t, 2);
}

const std::unordered_map<unsigned, Form>& Forms() {
  static const std::unordered_map<unsigned, Form> kForms = {
      {ARM_INS_ADD, AddForm},
      {ARM_INS_ADDW, AddForm},
      {ARM_INS_ADR, nullptr},
      {ARM_INS_SUB, SubtractForm},
      {ARM_INS_SUBW, SubtractForm},
      {ARM_INS_MOV, Move},
      {ARM_INS_MOVW, Move},
      {ARM_INS_MOVT, MoveTop},
      {ARM_INS_AND, And},
      {ARM_INS_BIC, ClearBits},
      {ARM_INS_ORR, SetBits},
      {ARM_INS_LSL, ShiftLeft},
      {ARM_INS_LSR, ShiftRight},
      {ARM_INS_UXTB, ZeroExtendByte},
      {ARM_INS_UXTH, ZeroExtendHalf},
      {ARM_INS_UBFX, BitField},
      {ARM_INS_CMP, Compare},
      {ARM_INS_CMN, TestOnly},
      {ARM_INS_TST, TestOnly},
      {ARM_INS_TEQ, TestOnly},
      {ARM_INS_LDR, LoadWord},
      {ARM_INS_LDRB, LoadByte},
      {ARM_INS_LDRH, LoadHalf},
      {ARM_INS_LDRSB, LoadSignedByte},
      {ARM_INS_LDRSH, LoadSignedHalf},
      {ARM_INS_LDRD, LoadTwo},
      {ARM_INS_STR, StoreWord},
      {ARM_INS_STRB, StoreByte},
      {ARM_INS_STRH, StoreHalf},
      {ARM_INS_STRD, StoreTwo},
      {ARM_INS_PUSH, Push},
      {ARM_INS_POP, Pop},
      {ARM_INS_LDM, LoadUp},
      {ARM_INS_LDMIB, LoadUpBefore},
      {ARM_INS_LDMDA, LoadDown},
      {ARM_INS_LDMDB, LoadDownBefore},
      {ARM_INS_STM, StoreUp},
      {ARM_INS_STMIB, StoreUpBefore},
      {ARM_INS_STMDA, StoreDown},
      {ARM_INS_STMDB, StoreDownBefore},
      {ARM_INS_VPUSH, VectorPush},
      {ARM_INS_VPOP, VectorPop},
      {ARM_INS_VSTMIA, VectorStoreUp},
      {ARM_INS_VSTMDB, VectorStoreDown},
      {ARM_INS_VLDMIA, VectorLoadUp},
      {ARM_INS_VLDMDB, VectorLoadDown},
      {ARM_INS_B, Jump},
      {ARM_INS_CBZ, JumpIfZero},
      {ARM_INS_CBNZ, JumpIfZero},
      {ARM_INS_BL, Call},
      {ARM_INS_BLX, CallAndSwitch},
      {ARM_INS_BX, JumpExchange},
      {ARM_INS_BXJ, JumpExchange},
      {ARM_INS_TBB, TableOfBytes},
      {ARM_INS_TBH, TableOfHalves},
      {ARM_INS_UDF, Stop},
      {ARM_INS_TRAP, Stop},
      {ARM_INS_SVC, SystemCall},
      {ARM_INS_BKPT, SystemCall},
      {ARM_INS_MSR, Nothing},
      {ARM_INS_PLD, Nothing},
      {ARM_INS_PLI, Nothing},
      {ARM_INS_PLDW, Nothing},
  };
  return kForms;
}

}  // namespace

CodeInstruction TranslateArm(const cs_insn& decoded, uint64_t origin, bool isThumb) {
  Translation translation{decoded.detail->arm, origin, isThumb, {}};
  translation.result.condition = ConditionOf(translation.arm.cc);
  translation.result.setsFlags = translation.arm.update_flags;
  const auto form = Forms().find(decoded.id);
  if (form == Forms().end() || form->second == nullptr) {
    Other(translation);
  } else {
    form->second(translation);
  }
  translation.result.length = static_cast<uint8_t>(decoded.size);
  return translation.result;
}

}  // namespace velkor
