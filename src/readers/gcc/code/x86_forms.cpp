#include "readers/gcc/code/x86_forms.h"

#include <unordered_map>

#include "readers/gcc/code/code_value.h"

namespace velkor::x86_forms {
namespace {

const std::unordered_map<int, uint8_t>& Numbers() {
  static const std::unordered_map<int, uint8_t> kNumbers = [] {
    constexpr x86_reg kNames[][4] = {
        {X86_REG_RAX, X86_REG_EAX, X86_REG_AX, X86_REG_AL},
        {X86_REG_RCX, X86_REG_ECX, X86_REG_CX, X86_REG_CL},
        {X86_REG_RDX, X86_REG_EDX, X86_REG_DX, X86_REG_DL},
        {X86_REG_RBX, X86_REG_EBX, X86_REG_BX, X86_REG_BL},
        {X86_REG_RSP, X86_REG_ESP, X86_REG_SP, X86_REG_SPL},
        {X86_REG_RBP, X86_REG_EBP, X86_REG_BP, X86_REG_BPL},
        {X86_REG_RSI, X86_REG_ESI, X86_REG_SI, X86_REG_SIL},
        {X86_REG_RDI, X86_REG_EDI, X86_REG_DI, X86_REG_DIL},
        {X86_REG_R8, X86_REG_R8D, X86_REG_R8W, X86_REG_R8B},
        {X86_REG_R9, X86_REG_R9D, X86_REG_R9W, X86_REG_R9B},
        {X86_REG_R10, X86_REG_R10D, X86_REG_R10W, X86_REG_R10B},
        {X86_REG_R11, X86_REG_R11D, X86_REG_R11W, X86_REG_R11B},
        {X86_REG_R12, X86_REG_R12D, X86_REG_R12W, X86_REG_R12B},
        {X86_REG_R13, X86_REG_R13D, X86_REG_R13W, X86_REG_R13B},
        {X86_REG_R14, X86_REG_R14D, X86_REG_R14W, X86_REG_R14B},
        {X86_REG_R15, X86_REG_R15D, X86_REG_R15W, X86_REG_R15B},
    };
    std::unordered_map<int, uint8_t> numbers = {
        {X86_REG_AH, X86_AX}, {X86_REG_CH, X86_CX}, {X86_REG_DH, X86_DX}, {X86_REG_BH, X86_BX}};
    uint8_t number = 0;
    for (const auto& names : kNames) {
      for (const x86_reg name : names) {
        numbers[name] = number;
      }
      ++number;
    }
    return numbers;
  }();
  return kNumbers;
}

void Unknown(Translation& t, uint8_t number) {
  const bool isStack = number == X86_SP;
  t.result.operation = isStack ? CodeOperation::kUnknown : CodeOperation::kOther;
  t.result.writes = Bit(number);
}

void LoadInto(Translation& t, bool isSigned) {
  TakeMemory(t, 1);
  t.result.memory.isSigned = isSigned;
  t.result.target = t.Register(0);
  t.result.operation = CodeOperation::kLoad;
}

void StoreFrom(Translation& t, uint8_t source) {
  TakeMemory(t, 0);
  t.result.source = source;
  t.result.operation = CodeOperation::kStore;
}

void AddNumber(Translation& t, int64_t number) {
  t.result.operation = CodeOperation::kAdd;
  t.result.target = t.Register(0);
  t.result.source = t.Register(0);
  t.result.immediate = number;
}

}  // namespace

uint8_t NumberOf(x86_reg capstoneRegister) {
  const auto found = Numbers().find(capstoneRegister);
  return found == Numbers().end() ? kNone : found->second;
}

bool IsHighByte(x86_reg capstoneRegister) {
  return capstoneRegister == X86_REG_AH || capstoneRegister == X86_REG_BH ||
         capstoneRegister == X86_REG_CH || capstoneRegister == X86_REG_DH;
}

void Other(Translation& t) {
  uint64_t writes = 0;
  for (size_t i = 0; i < t.Count(); ++i) {
    const bool isWritten = (t.Operand(i).access & CS_AC_WRITE) != 0 || i == 0;
    writes |= isWritten ? Bit(t.Register(i)) : 0;
  }
  const cs_detail& detail = *t.decoded.detail;
  bool isJump = false;
  for (uint8_t i = 0; i < detail.regs_write_count; ++i) {
    const auto number = static_cast<x86_reg>(detail.regs_write[i]);
    isJump = isJump || number == X86_REG_RIP || number == X86_REG_EIP;
    writes |= Bit(NumberOf(number));
  }
  const bool isStack = (writes & Bit(X86_SP)) != 0;
  t.result.operation = isStack || isJump ? CodeOperation::kUnknown : CodeOperation::kOther;
  t.result.writes = writes;
}

void TakeMemory(Translation& t, size_t i) {
  const x86_op_mem& operand = t.Operand(i).mem;
  CodeMemory& memory = t.result.memory;
  memory.width = t.Size(i);
  memory.displacement = operand.disp;
  memory.index = NumberOf(operand.index);
  for (int scale = operand.scale; memory.index != kNone && scale > 1; scale /= 2) {
    ++memory.shift;
  }
  if (operand.base == X86_REG_RIP) {
    memory.base = CodeMemory::kHere;
    memory.displacement = WrappingSum(memory.displacement, t.decoded.size);
  } else {
    memory.base = NumberOf(operand.base);
  }
  // Relative to what belongs to a thread, or with addresses of 32 bits.
  const bool isOfThread = operand.segment == X86_REG_FS || operand.segment == X86_REG_GS;
  if (isOfThread || t.x86.addr_size != kWord) {
    memory.base = CodeMemory::kUnknown;
    memory.index = kNone;
  }
}

void Move(Translation& t) {
  if (t.IsMemory(0)) {
    return StoreFrom(t, t.IsWide(1) ? t.Register(1) : kNone);
  }
  const bool isWhole = t.IsWide(0) || t.IsHalf(0);
  if (!isWhole) {
    return Other(t);
  }
  t.result.target = t.Register(0);
  if (t.IsNumber(1)) {
    t.result.operation = CodeOperation::kSet;
    t.result.immediate = t.IsWide(0) ? t.Number(1) : t.Number(1) & UINT32_MAX;
  } else if (t.IsMemory(1)) {
    LoadInto(t, false);
  } else if (t.Register(1) == kNone) {
    return Other(t);
  } else {
    t.result.source = t.Register(1);
    t.result.operation = t.IsWide(0) ? CodeOperation::kCopy : CodeOperation::kLimit;
    t.result.immediate = UINT32_MAX;
  }
}

void MoveZero(Translation& t) {
  if (t.IsMemory(1)) {
    return LoadInto(t, false);
  }
  if (t.Register(1) == kNone || IsHighByte(t.Operand(1).reg)) {
    return Other(t);
  }
  t.result.operation = CodeOperation::kLimit;
  t.result.target = t.Register(0);
  t.result.source = t.Register(1);
  t.result.immediate = t.Size(1) == 1 ? 0xFF : 0xFFFF;
}

void MoveSign(Translation& t) {
  if (t.IsMemory(1)) {
    return LoadInto(t, true);
  }
  if (!t.IsWide(0) || t.Register(1) == kNone || t.Size(1) != 4) {
    return Other(t);
  }
  t.result.operation = CodeOperation::kExtendSign;
  t.result.target = t.Register(0);
  t.result.source = t.Register(1);
  t.result.width = 4;
}

void ExtendAccumulator(Translation& t) {
  t.result.operation = CodeOperation::kExtendSign;
  t.result.target = X86_AX;
  t.result.source = X86_AX;
  t.result.width = 4;
}

void LoadAddress(Translation& t) {
  TakeMemory(t, 1);
  const CodeMemory memory = t.result.memory;
  t.result.memory = {};
  if (!t.IsWide(0) || memory.base == CodeMemory::kUnknown) {
    return Unknown(t, t.Register(0));
  }
  t.result.target = t.Register(0);
  t.result.immediate = memory.displacement;
  t.result.source = memory.base;
  t.result.index = memory.index;
  t.result.shift = memory.shift;
  if (memory.base == CodeMemory::kHere) {
    t.result.operation = CodeOperation::kSetAddress;
  } else if (memory.index != kNone) {
    t.result.operation = CodeOperation::kAddScaled;
  } else if (memory.base != kNone) {
    t.result.operation = CodeOperation::kAdd;
  } else {
    t.result.operation = CodeOperation::kSet;
  }
}

void Add(Translation& t) {
  if (t.IsWide(0) && t.IsNumber(1)) {
    return AddNumber(t, t.Number(1));
  }
  if (!t.IsWide(0) || !t.IsWide(1)) {
    return Other(t);
  }
  t.result.operation = CodeOperation::kAddScaled;
  t.result.target = t.Register(0);
  t.result.source = t.Register(0);
  t.result.index = t.Register(1);
}

void Subtract(Translation& t) {
  if (t.IsWide(0) && t.IsNumber(1)) {
    return AddNumber(t, -t.Number(1));
  }
  if (!t.IsWide(0) || !t.IsWide(1)) {
    return Other(t);
  }
  t.result.operation = CodeOperation::kSubtract;
  t.result.target = t.Register(0);
  t.result.source = t.Register(0);
  t.result.index = t.Register(1);
}

void And(Translation& t) {
  if (!t.IsNumber(1) || (!t.IsWide(0) && !t.IsHalf(0))) {
    return Other(t);
  }
  t.result.operation = CodeOperation::kMask;
  t.result.target = t.Register(0);
  t.result.source = t.Register(0);
  t.result.immediate = t.IsWide(0) ? t.Number(1) : t.Number(1) & UINT32_MAX;
}

void ExclusiveOr(Translation& t) {
  const bool isItself = t.Register(0) != kNone && t.IsRegister(1) &&
                        t.Operand(0).reg == t.Operand(1).reg && t.Size(0) >= 4;
  if (!isItself) {
    return Other(t);
  }
  t.result.operation = CodeOperation::kSet;
  t.result.target = t.Register(0);
}

void ShiftLeft(Translation& t) {
  if (!t.IsNumber(1) || !t.IsWide(0)) {
    return Other(t);
  }
  t.result.operation = CodeOperation::kShiftLeft;
  t.result.target = t.Register(0);
  t.result.source = t.Register(0);
  t.result.shift = static_cast<uint8_t>(t.Number(1) & 63);
}

void ShiftRight(Translation& t) {
  if (!t.IsNumber(1) || (!t.IsWide(0) && !t.IsHalf(0))) {
    return Other(t);
  }
  t.result.operation = CodeOperation::kShiftRight;
  t.result.target = t.Register(0);
  t.result.source = t.Register(0);
  t.result.shift = static_cast<uint8_t>(t.Number(1) & 63);
}

void Push(Translation& t) {
  if (t.IsMemory(0)) {
    TakeMemory(t, 0);
    t.result.operation = CodeOperation::kPushMemory;
    return;
  }
  t.result.operation = CodeOperation::kStore;
  t.result.source = t.IsWide(0) ? t.Register(0) : kNone;
  t.result.memory = {.base = X86_SP, .width = kWord, .displacement = -kWord, .baseChange = -kWord};
}

void Pop(Translation& t) {
  t.result.operation = CodeOperation::kLoadMany;
  t.result.list = t.IsWide(0) ? Bit(t.Register(0)) : 0;
  t.result.memory = {.base = X86_SP, .width = kWord, .baseChange = kWord};
  if (t.Size(0) == 2) {
    t.result.operation = CodeOperation::kUnknown;
  }
}

void PushFlags(Translation& t) {
  Push(t);
}

void PopFlags(Translation& t) {
  t.result.operation = CodeOperation::kLoadMany;
  t.result.memory = {.base = X86_SP, .width = kWord, .baseChange = kWord};
}

void Leave(Translation& t) {
  t.result.operation = CodeOperation::kLeave;
  t.result.source = X86_BP;
}

void Compare(Translation& t) {
  t.result.operation = CodeOperation::kOther;
  if (t.IsNumber(1)) {
    const uint8_t size = t.Size(0);
    const uint64_t mask = size >= kWord ? UINT64_MAX : (uint64_t{1} << (8 * size)) - 1;
    t.result.immediate = static_cast<int64_t>(static_cast<uint64_t>(t.Number(1)) & mask);
    if (t.IsMemory(0)) {
      TakeMemory(t, 0);
      t.result.operation = CodeOperation::kCompareMemory;
    } else if (t.Register(0) != kNone && !IsHighByte(t.Operand(0).reg)) {
      t.result.operation = CodeOperation::kCompare;
      t.result.source = t.Register(0);
    }
  } else if (t.IsWide(0) && t.IsWide(1)) {
    t.result.operation = CodeOperation::kCompare;
    t.result.source = t.Register(0);
    t.result.index = t.Register(1);
  }
}

}  // namespace velkor::x86_forms
