#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdlib>

#include "readers/gcc/code/arm_forms.h"

namespace velkor::arm_forms {

namespace {

// The decoder tells 0 that is subtracted as the lowest number.
int32_t NumberOrNothing(int32_t number) {
  return number == INT32_MIN ? 0 : number;
}

// Of the operand at i and a number that may follow it. A base that changes by what is not known
// goes into `writes`.
void TakeMemory(Translation& t, size_t i, uint8_t width) {
  const cs_arm_op& operand = t.Operand(i);
  CodeMemory& memory = t.result.memory;
  memory.width = width;
  memory.base = NumberOf(static_cast<int>(operand.mem.base));
  memory.index = NumberOf(static_cast<int>(operand.mem.index));
  memory.displacement = NumberOrNothing(operand.mem.disp);
  memory.shift = t.Scale(i);
  const bool isOddIndex =
      memory.index != kNone && (operand.mem.scale < 0 || !t.IsScaled(i) || operand.subtracted);
  if (memory.base == ARM_PC) {
    memory.base = CodeMemory::kHere;
    memory.displacement += t.Ahead();
    memory.shift = memory.index == kNone ? 2 : memory.shift;
  }
  if (t.arm.writeback && memory.base == CodeMemory::kHere) {
    t.result.writes |= Bit(ARM_PC);
  } else if (t.arm.writeback) {
    const bool isAfter = i + 1 < t.Count();
    if (isAfter && t.IsNumber(i + 1)) {
      const int32_t change = NumberOrNothing(static_cast<int32_t>(t.Number(i + 1)));
      memory.baseChange = t.Operand(i + 1).subtracted ? -std::abs(change) : change;
    } else if (isAfter || memory.index != kNone) {
      t.result.writes |= Bit(memory.base);
    } else {
      memory.baseChange = static_cast<int32_t>(memory.displacement);
    }
  }
  if (isOddIndex) {
    memory.base = kNone;
    memory.index = kNone;
  }
}

}  // namespace

// A stack pointer that changes by what is not known is no form.
void CheckBase(Translation& t) {
  const uint64_t bad = Bit(ARM_SP) | Bit(ARM_PC);
  if ((t.result.writes & bad) != 0) {
    t.result.operation = CodeOperation::kUnknown;
  }
}

namespace {

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

}  // namespace

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

namespace {

void Store(Translation& t, uint8_t width) {
  if (!t.IsMemory(1)) {
    return Other(t);
  }
  TakeMemory(t, 1, width);
  t.result.source = t.Register(0);
  t.result.operation = CodeOperation::kStore;
  CheckBase(t);
}

}  // namespace

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

namespace {

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

}  // namespace

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

namespace {

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

}  // namespace

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

namespace {

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

}  // namespace

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

}  // namespace velkor::arm_forms
