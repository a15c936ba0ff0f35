#include <bit>
#include <optional>

#include "readers/gcc/code/a64_forms.h"

namespace velkor::a64_forms {
namespace {

using Operation = CodeOperation;

constexpr int64_t kHalfMask = UINT32_MAX;

// Of a register, or the stack pointer, from another one.
CodeInstruction Computed(Operation operation, uint8_t target, uint8_t source) {
  CodeInstruction instruction = Plain(operation);
  instruction.target = target;
  instruction.source = source;
  return instruction;
}

// Of registers of 32 bits little is followed: not the stack pointer.
CodeInstruction Untold(uint8_t target) {
  return target == A64_SP ? Plain(Operation::kUnknown) : Writing(Bit(target));
}

CodeInstruction Constant(uint8_t target, uint64_t value) {
  CodeInstruction instruction = Plain(Operation::kSet);
  instruction.target = target;
  instruction.immediate = static_cast<int64_t>(value);
  return instruction;
}

CodeInstruction WithFlags(CodeInstruction instruction, bool setsFlags) {
  instruction.setsFlags = setsFlags;
  return instruction;
}

}  // namespace

CodeInstruction Address(Encoding encoding) {
  const bool isOfPage = encoding.IsWide();
  CodeInstruction instruction = Plain(Operation::kSetAddress);
  instruction.target = encoding.Register(0);
  const int64_t number = encoding.SignedField(5, 19) * 4 + encoding.Field(29, 2);
  instruction.shift = isOfPage ? 12 : 0;
  instruction.immediate = isOfPage ? number * 4096 : number;
  return instruction;
}

CodeInstruction AddNumber(Encoding encoding) {
  const bool subtracts = encoding.Has(30);
  const bool setsFlags = encoding.Has(29);
  const uint8_t source = encoding.RegisterOrStack(5);
  const uint8_t target = setsFlags ? encoding.Register(0) : encoding.RegisterOrStack(0);
  const int64_t number = int64_t{encoding.Field(10, 12)} << (encoding.Has(22) ? 12 : 0);
  if (setsFlags && subtracts && target == kZero && (encoding.IsWide() || source != A64_SP)) {
    CodeInstruction compare = Computed(Operation::kCompare, kNone, source);
    compare.immediate = number;
    return compare;
  }
  if (!encoding.IsWide()) {
    return WithFlags(Untold(target), setsFlags);
  }
  CodeInstruction instruction = Computed(Operation::kAdd, target, source);
  instruction.immediate = subtracts ? -number : number;
  return WithFlags(instruction, setsFlags);
}

// A tag is a part of an address that does not count: not followed.
CodeInstruction AddTag(Encoding encoding) {
  return Untold(encoding.RegisterOrStack(0));
}

namespace {

// The pattern of `imms` + 1 ones in elements of equal size, rotated right by `immr`.
std::optional<uint64_t> PatternOf(Encoding encoding) {
  const uint32_t kind = encoding.Field(22, 1) << 6 | (~encoding.Field(10, 6) & 0x3FU);
  if (kind < 2) {
    return std::nullopt;
  }
  const unsigned size = std::bit_floor(kind);
  const unsigned ones = (encoding.Field(10, 6) & (size - 1)) + 1;
  const unsigned turn = encoding.Field(16, 6) & (size - 1);
  if (ones == size || (size == 64 && !encoding.IsWide())) {
    return std::nullopt;
  }
  const uint64_t all = UINT64_MAX >> (64 - size);
  uint64_t pattern = UINT64_MAX >> (64 - ones);
  pattern = turn == 0 ? pattern : (pattern >> turn | pattern << (size - turn)) & all;
  for (unsigned width = size; width < 64; width *= 2) {
    pattern |= pattern << width;
  }
  return encoding.IsWide() ? pattern : pattern & UINT32_MAX;
}

}  // namespace

CodeInstruction LogicalNumber(Encoding encoding) {
  enum : uint32_t { kAnd, kOr, kExclusiveOr, kAndFlags };
  const std::optional<uint64_t> pattern = PatternOf(encoding);
  const uint32_t kind = encoding.Field(29, 2);
  const bool setsFlags = kind == kAndFlags;
  const uint8_t source = encoding.Register(5);
  const uint8_t target = setsFlags ? encoding.Register(0) : encoding.RegisterOrStack(0);
  if (!pattern || (target == A64_SP && !encoding.IsWide())) {
    return Plain(Operation::kUnknown);
  }
  if (kind == kOr && source == kZero) {
    return Constant(target, *pattern);
  }
  if (kind == kOr && encoding.IsWide() && target != A64_SP) {
    CodeInstruction instruction = Computed(Operation::kSetBits, target, source);
    instruction.immediate = static_cast<int64_t>(*pattern);
    return instruction;
  }
  if (kind == kAnd || setsFlags) {
    CodeInstruction instruction = Computed(Operation::kMask, target, source);
    instruction.immediate = static_cast<int64_t>(*pattern);
    return WithFlags(instruction, setsFlags);
  }
  return Untold(target);
}

CodeInstruction MoveWide(Encoding encoding) {
  enum : uint32_t { kNot, kUnallocated, kMove, kKeep };
  const uint32_t kind = encoding.Field(29, 2);
  const unsigned shift = encoding.Field(21, 2) * 16;
  const uint64_t part = encoding.Field(5, 16);
  if (kind == kUnallocated || (!encoding.IsWide() && shift > 16)) {
    return Plain(Operation::kUnknown);
  }
  const uint64_t value = kind == kNot ? ~(part << shift) : part << shift;
  CodeInstruction instruction =
      Constant(encoding.Register(0), encoding.IsWide() ? value : value & UINT32_MAX);
  if (kind == kKeep) {
    instruction.operation = Operation::kSetPart;
    instruction.immediate = static_cast<int64_t>(part);
    instruction.shift = static_cast<uint8_t>(shift);
  }
  return instruction;
}

namespace {

// lsl, lsr, uxtb, uxth, ubfx.
CodeInstruction UnsignedField(Encoding encoding) {
  const uint32_t turn = encoding.Field(16, 6);
  const uint32_t last = encoding.Field(10, 6);
  const uint8_t target = encoding.Register(0);
  const uint8_t source = encoding.Register(5);
  if (encoding.IsWide() && last == 63) {
    CodeInstruction instruction = Computed(Operation::kShiftRight, target, source);
    instruction.shift = static_cast<uint8_t>(turn);
    return instruction;
  }
  if (encoding.IsWide() && turn == last + 1) {
    CodeInstruction instruction = Computed(Operation::kShiftLeft, target, source);
    instruction.shift = static_cast<uint8_t>(63 - last);
    return instruction;
  }
  if (last < turn) {
    return Writing(Bit(target));
  }
  CodeInstruction instruction =
      Computed(Operation::kLimit, target, turn == 0 ? source : uint8_t{kNone});
  instruction.immediate = static_cast<int64_t>((uint64_t{2} << (last - turn)) - 1);
  return instruction;
}

}  // namespace

CodeInstruction BitField(Encoding encoding) {
  enum : uint32_t { kSigned, kInsert, kUnsigned };
  const uint32_t kind = encoding.Field(29, 2);
  const uint32_t last = encoding.Field(10, 6);
  if (kind > kUnsigned) {
    return Plain(Operation::kUnknown);
  }
  if (kind == kUnsigned) {
    return UnsignedField(encoding);
  }
  const bool isWhole = last == 7 || last == 15 || last == 31;
  const bool isLowest = kind == kSigned && encoding.Field(16, 6) == 0;
  if (!isLowest || !isWhole || !encoding.IsWide()) {
    return Writing(Bit(encoding.Register(0)));
  }
  CodeInstruction instruction =
      Computed(Operation::kExtendSign, encoding.Register(0), encoding.Register(5));
  instruction.width = static_cast<uint8_t>((last + 1) / 8);
  return instruction;
}

CodeInstruction Logical(Encoding encoding) {
  enum : uint32_t { kAnd, kOr, kExclusiveOr, kAndFlags };
  const uint32_t kind = encoding.Field(29, 2);
  const uint8_t target = encoding.Register(0);
  const uint8_t source = encoding.Register(16);
  const bool isPlain =
      !encoding.Has(21) && encoding.Field(22, 2) == 0 && encoding.Field(10, 6) == 0;
  const bool isMove = kind == kOr && isPlain && encoding.Register(5) == kZero;
  if (kind == kExclusiveOr && isPlain && encoding.IsWide()) {
    CodeInstruction instruction = Computed(Operation::kMix, target, encoding.Register(5));
    instruction.index = source;
    return instruction;
  }
  if (!isMove) {
    return WithFlags(Writing(Bit(target)), kind == kAndFlags);
  }
  if (source == kZero) {
    return Constant(target, 0);
  }
  CodeInstruction instruction =
      Computed(encoding.IsWide() ? Operation::kCopy : Operation::kLimit, target, source);
  instruction.immediate = kHalfMask;
  return instruction;
}

namespace {

// Two registers are compared, the second as it is.
CodeInstruction Comparison(uint8_t source, uint8_t index) {
  CodeInstruction instruction = Computed(Operation::kCompare, kNone, source);
  instruction.index = index;
  return instruction;
}

CodeInstruction Sum(Encoding encoding, uint8_t target, uint8_t source, unsigned shift) {
  CodeInstruction instruction =
      Computed(encoding.Has(30) ? Operation::kSubtract : Operation::kAddScaled, target, source);
  instruction.index = encoding.Register(16);
  instruction.shift = static_cast<uint8_t>(shift);
  return WithFlags(instruction, encoding.Has(29));
}

}  // namespace

CodeInstruction AddShifted(Encoding encoding) {
  const bool subtracts = encoding.Has(30);
  const bool setsFlags = encoding.Has(29);
  const uint8_t target = encoding.Register(0);
  const uint8_t source = encoding.Register(5);
  const unsigned shift = encoding.Field(10, 6);
  const bool isScaled = encoding.Field(22, 2) == 0;
  if (setsFlags && subtracts && target == kZero && isScaled && shift == 0) {
    return Comparison(source, encoding.Register(16));
  }
  if (!encoding.IsWide() || !isScaled) {
    return WithFlags(Writing(Bit(target)), setsFlags);
  }
  const bool isScaleOnly = source == kZero && !subtracts;
  return Sum(encoding, target, isScaleOnly ? uint8_t{kNone} : source, shift);
}

CodeInstruction AddExtended(Encoding encoding) {
  constexpr uint32_t kSigned = 4;
  const bool subtracts = encoding.Has(30);
  const bool setsFlags = encoding.Has(29);
  const uint8_t target = setsFlags ? encoding.Register(0) : encoding.RegisterOrStack(0);
  const uint8_t source = encoding.RegisterOrStack(5);
  const unsigned shift = encoding.Field(10, 3);
  const uint32_t extension = encoding.Field(13, 3);
  const bool isWhole = (extension & 3U) == 3;
  if (shift > 4) {
    return Plain(Operation::kUnknown);
  }
  if (setsFlags && subtracts && target == kZero && encoding.IsWide() && isWhole && shift == 0) {
    return Comparison(source, encoding.Register(16));
  }
  if (!encoding.IsWide()) {
    return WithFlags(Untold(target), setsFlags);
  }
  CodeInstruction instruction = Sum(encoding, target, source, shift);
  if (!isWhole && !subtracts && extension >= kSigned) {
    instruction.operation = Operation::kAddExtended;
    instruction.width = static_cast<uint8_t>(1U << (extension & 3U));
  } else if (!isWhole && subtracts) {
    instruction.index = kNone;  // something
  } else if (!isWhole) {
    return WithFlags(Untold(target), setsFlags);
  }
  return instruction;
}

CodeInstruction AddWithCarry(Encoding encoding) {
  return WithFlags(Writing(Bit(encoding.Register(0))), encoding.Has(29));
}

CodeInstruction FlagsOnly(Encoding /*encoding*/) {
  return WithFlags(Plain(Operation::kOther), true);
}

CodeInstruction TwoSources(Encoding encoding) {
  constexpr uint32_t kRandomTag = 4;
  const bool mayBeStack = encoding.IsWide() && encoding.Field(10, 6) == kRandomTag;
  const uint8_t target = mayBeStack ? encoding.RegisterOrStack(0) : encoding.Register(0);
  return WithFlags(Untold(target), encoding.Has(29));
}

// Signatures are a part of an address that does not count.
CodeInstruction OneSource(Encoding encoding) {
  const bool isSignature = encoding.Field(16, 5) == 1;
  return isSignature ? Plain(Operation::kOther) : Writing(Bit(encoding.Register(0)));
}

}  // namespace velkor::a64_forms
