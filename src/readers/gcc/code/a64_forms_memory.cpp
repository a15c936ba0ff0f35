#include "readers/gcc/code/a64_forms.h"

namespace velkor::a64_forms {
namespace {

using Operation = CodeOperation;

// How single registers are loaded and stored.
struct Access {
  bool isKnown = true;
  bool isLoad = false;
  bool isSigned = false;
  bool isVector = false;
  bool isHintOnly = false;
  uint8_t width = 0;
};

Access AccessOf(Encoding encoding) {
  enum : uint32_t { kStore, kLoad, kLoadSigned };
  const uint32_t size = encoding.Field(30, 2);
  const uint32_t kind = encoding.Field(22, 2);
  Access access;
  access.isVector = encoding.Has(26);
  access.width = static_cast<uint8_t>(1U << size);
  if (access.isVector) {
    const bool isLargest = kind > kLoad;
    access.isKnown = !isLargest || size == 0;
    access.isLoad = (kind & 1U) != 0;
    access.width = isLargest ? 16 : access.width;
    return access;
  }
  access.isLoad = kind != kStore;
  access.isSigned = kind > kLoad;
  access.isHintOnly = size == 3 && kind == kLoadSigned;
  access.isKnown = kind < kLoadSigned || access.isHintOnly || size + kind < 5;
  return access;
}

// What an access to `memory` does.
CodeInstruction Accessing(const Access& access, const CodeMemory& memory, uint8_t number) {
  if (!access.isKnown || (access.isHintOnly && memory.baseChange != 0)) {
    return Plain(Operation::kUnknown);
  }
  if (access.isHintOnly) {
    return Plain(Operation::kOther);
  }
  CodeInstruction instruction;
  instruction.memory = memory;
  instruction.memory.width = access.width;
  instruction.memory.isSigned = access.isSigned;
  instruction.usesFloatingPoint = access.isVector;
  if (access.isVector) {  // not followed, but where it goes
    instruction.operation = access.isLoad ? Operation::kLoadMany : Operation::kStoreMany;
  } else if (access.isLoad) {
    instruction.operation = Operation::kLoad;
    instruction.target = number;
  } else {
    instruction.operation = Operation::kStore;
    instruction.source = number;
  }
  return instruction;
}

// A base that changes before the access, after it, or not.
CodeMemory At(uint8_t base, int64_t distance, bool isBefore, bool changes) {
  CodeMemory memory;
  memory.base = base;
  memory.displacement = isBefore || !changes ? distance : 0;
  memory.baseChange = changes ? static_cast<int32_t>(distance) : 0;
  return memory;
}

}  // namespace

CodeInstruction LoadLiteral(Encoding encoding) {
  enum : uint32_t { kHalf, kWhole, kSignedHalf, kHintOnly };
  const uint32_t kind = encoding.Field(30, 2);
  Access access;
  access.isLoad = true;
  access.isVector = encoding.Has(26);
  access.isSigned = kind == kSignedHalf;
  access.isHintOnly = kind == kHintOnly && !access.isVector;
  access.isKnown = !access.isVector || kind != kHintOnly;
  access.width = kind == kWhole ? 8 : 4;
  CodeMemory memory;
  memory.base = CodeMemory::kHere;
  memory.displacement = encoding.SignedField(5, 19) * 4;
  return Accessing(access, memory, encoding.Register(0));
}

CodeInstruction AtNumber(Encoding encoding) {
  const Access access = AccessOf(encoding);
  const int64_t distance = int64_t{encoding.Field(10, 12)} * access.width;
  return Accessing(access, At(encoding.RegisterOrStack(5), distance, false, false),
                   encoding.Register(0));
}

CodeInstruction AtDistance(Encoding encoding) {
  const uint32_t kind = encoding.Field(10, 2);
  const bool changes = (kind & 1U) != 0;
  const CodeMemory memory =
      At(encoding.RegisterOrStack(5), encoding.SignedField(12, 9), kind == 3, changes);
  return Accessing(AccessOf(encoding), memory, encoding.Register(0));
}

CodeInstruction AtIndex(Encoding encoding) {
  const bool isExtended = encoding.Has(14);
  const Access access = AccessOf(encoding);
  CodeMemory memory = At(encoding.RegisterOrStack(5), 0, false, false);
  memory.index = encoding.Register(16);
  for (unsigned width = access.width; encoding.Has(12) && width > 1; width /= 2) {
    ++memory.shift;
  }
  return isExtended ? Accessing(access, memory, encoding.Register(0)) : Plain(Operation::kUnknown);
}

// Loads that acquire and stores that release, with a distance.
CodeInstruction Ordered(Encoding encoding) {
  const CodeMemory memory =
      At(encoding.RegisterOrStack(5), encoding.SignedField(12, 9), false, false);
  return Accessing(AccessOf(encoding), memory, encoding.Register(0));
}

CodeInstruction LoadAuthenticated(Encoding encoding) {
  const int64_t distance =
      (encoding.SignedField(22, 1) * 512 + int64_t{encoding.Field(12, 9)}) * kWord;
  const Access access{.isLoad = true, .width = kWord};
  return Accessing(access, At(encoding.RegisterOrStack(5), distance, true, encoding.Has(11)),
                   encoding.Register(0));
}

CodeInstruction Pair(Encoding encoding) {
  enum : uint32_t { kHalves, kSignedHalves, kWords };
  const uint32_t kind = encoding.Field(30, 2);
  const uint32_t mode = encoding.Field(23, 2);
  Access access;
  access.isLoad = encoding.Has(22);
  access.isVector = encoding.Has(26);
  access.isSigned = kind == kSignedHalves && !access.isVector;
  access.isKnown = kind <= kWords && !(access.isSigned && mode == 0);
  access.width = access.isVector ? static_cast<uint8_t>(4U << kind)
                                 : static_cast<uint8_t>(kind == kWords ? kWord : 4);
  const bool isOfTags = access.isSigned && !access.isLoad;
  const int64_t scale = isOfTags ? 16 : access.width;
  access.width = isOfTags ? kWord : access.width;
  const CodeMemory memory = At(encoding.RegisterOrStack(5), encoding.SignedField(15, 7) * scale,
                               mode == 3, (mode & 1U) != 0);
  CodeInstruction instruction = Accessing(access, memory, encoding.Register(0));
  if (access.isVector) {
    instruction.memory.width = static_cast<uint8_t>(2 * access.width);
  } else if (access.isLoad) {
    instruction.target2 = encoding.Register(10);
  } else {
    instruction.index = encoding.Register(10);
  }
  return instruction;
}

namespace {

// Something is written there that is not followed.
CodeInstruction StoringAt(uint8_t base, unsigned width, uint64_t writes) {
  CodeInstruction instruction = Plain(Operation::kStoreMany);
  instruction.memory.base = base;
  instruction.memory.width = static_cast<uint8_t>(width);
  instruction.writes = writes;
  return instruction;
}

}  // namespace

CodeInstruction Exclusive(Encoding encoding) {
  const bool isLoad = encoding.Has(22);
  const bool isOrdered = encoding.Has(23);
  const bool isOther = encoding.Has(21);  // a pair, or compare and swap
  const unsigned width = 1U << encoding.Field(30, 2);
  const uint8_t base = encoding.RegisterOrStack(5);
  const uint64_t first = Bit(encoding.Register(0));
  const uint64_t second = Bit(encoding.Register(10));
  const uint64_t status = Bit(encoding.Register(16));
  if (isOrdered && isOther) {  // one
    return StoringAt(base, width, status);
  }
  if (isOther && width < 4) {  // two, of which the lower bit of the size tells the width
    return StoringAt(base, width == 2 ? 16 : 8, (status | status << 1) & ~Bit(A64_SP));
  }
  if (isLoad) {
    return Writing(first | (isOther ? second : 0));
  }
  return StoringAt(base, isOther ? 2 * width : width, isOrdered ? 0 : status);
}

CodeInstruction Atomic(Encoding encoding) {
  enum : uint32_t { kSwap = 0, kLoadAcquire = 4 };
  const uint32_t kind = encoding.Field(12, 3);
  const uint64_t result = Bit(encoding.Register(0));
  const bool isChange = !encoding.Has(15) || kind == kSwap;
  if (isChange) {
    return StoringAt(encoding.RegisterOrStack(5), 1U << encoding.Field(30, 2), result);
  }
  const bool isLoad = kind == kLoadAcquire && encoding.RegisterOrStack(16) == A64_SP;
  return isLoad ? Writing(result) : Plain(Operation::kUnknown);
}

CodeInstruction CopyMemory(Encoding encoding) {
  return WritingMemory(Bit(encoding.Register(0)) | Bit(encoding.Register(5)) |
                       Bit(encoding.Register(16)));
}

// Tags of memory, some with the memory itself.
CodeInstruction Tags(Encoding encoding) {
  constexpr unsigned kGranule = 16;
  const uint32_t kind = encoding.Field(22, 2);
  const uint32_t mode = encoding.Field(10, 2);
  const uint8_t base = encoding.RegisterOrStack(5);
  if (mode == 0) {  // those of much memory, or of one place, into a register
    return (kind & 1U) != 0 ? WritesFirst(encoding) : WritingMemory(0);
  }
  CodeInstruction instruction = StoringAt(base, kind >= 2 ? 2 * kGranule : kGranule, 0);
  const CodeMemory memory =
      At(base, encoding.SignedField(12, 9) * kGranule, mode == 3, (mode & 1U) != 0);
  instruction.memory.displacement = memory.displacement;
  instruction.memory.baseChange = memory.baseChange;
  return instruction;
}

namespace {

// Vectors in memory, with a base that may change by their size, or by a register.
CodeInstruction VectorsAt(Encoding encoding, unsigned bytes) {
  const bool changes = encoding.Has(23);
  const bool isByNumber = encoding.RegisterOrStack(16) == A64_SP;
  CodeInstruction instruction =
      Plain(encoding.Has(22) ? Operation::kLoadMany : Operation::kStoreMany);
  instruction.usesFloatingPoint = true;
  instruction.memory.base = encoding.RegisterOrStack(5);
  instruction.memory.width = static_cast<uint8_t>(bytes);
  if (changes && isByNumber) {
    instruction.memory.baseChange = static_cast<int32_t>(bytes);
  } else if (changes && instruction.memory.base == A64_SP) {
    instruction.operation = Operation::kUnknown;
  } else if (changes) {
    instruction.writes = Bit(instruction.memory.base);
  }
  return instruction;
}

}  // namespace

CodeInstruction Structures(Encoding encoding) {
  constexpr uint8_t kCounts[16] = {4, 0, 4, 0, 3, 0, 3, 1, 2, 0, 2, 0, 0, 0, 0, 0};
  const unsigned count = kCounts[encoding.Field(12, 4)];
  return count == 0 ? Plain(Operation::kUnknown)
                    : VectorsAt(encoding, count * (encoding.Has(30) ? 16 : 8));
}

CodeInstruction OneStructure(Encoding encoding) {
  enum : uint32_t { kByte, kHalf, kWordOrTwo, kRepeated };
  const uint32_t kind = encoding.Field(14, 2);
  const uint32_t size = encoding.Field(10, 2);
  const unsigned count = encoding.Field(13, 1) * 2 + encoding.Field(21, 1) + 1;
  unsigned shift = kind;
  if (kind == kRepeated) {
    shift = size;
  } else if (kind == kWordOrTwo && (size & 1U) != 0) {
    shift = 3;
  }
  return VectorsAt(encoding, count << shift);
}

}  // namespace velkor::a64_forms
