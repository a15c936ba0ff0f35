#include "readers/gcc/code/arm_forms.h"

namespace velkor::arm_forms {

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

void JumpToRegister(Translation& t, uint8_t source) {
  t.result.operation = CodeOperation::kJumpRegister;
  t.result.source = source;
}

namespace {

// add and sub: of two operands (the first is a source too) or three.
void Add(Translation& t, int sign) {
  const size_t last = t.Last();
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

}  // namespace

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

namespace {

// Register, register (left out where it is the same), number.
bool TakeRegistersAndNumber(Translation& t) {
  const size_t last = t.Last();
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

}  // namespace

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

namespace {

void Shift(Translation& t, CodeOperation operation) {
  if (!TakeRegistersAndNumber(t)) {
    return;
  }
  if (t.result.immediate > 31) {  // nothing is left
    t.result.operation = CodeOperation::kSet;
    t.result.immediate = 0;
  } else {
    t.result.operation = operation;
    t.result.shift = static_cast<uint8_t>(t.result.immediate);
  }
}

}  // namespace

void ShiftLeft(Translation& t) {
  Shift(t, CodeOperation::kShiftLeft);
}

void ShiftRight(Translation& t) {
  Shift(t, CodeOperation::kShiftRight);
}

namespace {

void ZeroExtend(Translation& t, int64_t mask) {
  const size_t last = t.Last();
  if (t.Operand(last).shift.type != ARM_SFT_INVALID || t.Register(last) == kNone ||
      t.Register(0) == ARM_PC) {
    return Other(t);
  }
  t.result.operation = CodeOperation::kLimit;
  t.result.target = t.Register(0);
  t.result.source = t.Register(last);
  t.result.immediate = mask;
}

}  // namespace

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

}  // namespace velkor::arm_forms
