#include <algorithm>
#include <bit>
#include <optional>

#include "readers/gcc/code/code_step.h"

namespace velkor {
namespace {

constexpr uint8_t kMostShift = 31;
constexpr int64_t kFarthestOnStack = int64_t{1} << 40;  // that anything on a stack can be away

}  // namespace

CodeValue CodeStep::Moved(const CodeValue& value, int64_t by, uint64_t name) const {
  if (by == 0) {
    return value;
  }
  CodeValue moved = value;
  const auto sum = static_cast<uint64_t>(value.amount) + static_cast<uint64_t>(by);
  moved.amount = static_cast<int64_t>(sum);
  if (value.IsStack() && (moved.amount > kFarthestOnStack || moved.amount < -kFarthestOnStack)) {
    return CodeValue::Number(name);
  }
  if (value.IsStack() || value.IsTable() || (value.IsNumber() && value.amount != 0)) {
    return moved;
  }
  return value.IsConstant() ? Wrapped(sum) : CodeValue::Number(name);
}

CodeValue CodeStep::Sum(const CodeValue& left, const CodeValue& right, uint8_t shift,
                        uint64_t name) const {
  if (right.IsConstant() && shift < kMostShift) {
    const auto by = static_cast<uint64_t>(right.amount) << shift;
    // The address of a table, in the second place.
    if (left.IsNumber() && left.amount == 0 && !image_.ConstantsAt(by).empty()) {
      CodeValue sum = left;
      sum.amount = static_cast<int64_t>(by);
      return sum;
    }
    const bool isNarrow = conventions_.numberMask == UINT32_MAX;
    return Moved(left, isNarrow ? static_cast<int32_t>(by) : static_cast<int64_t>(by), name);
  }
  if (left.IsConstant()) {
    CodeValue sum = ShiftedLeft(right, shift, name);
    if (sum.IsTable() || sum.IsPlain() || (sum.IsNumber() && sum.amount == 0)) {
      sum.amount = WrappingSum(sum.amount, left.amount);
      return sum;
    }
    return right.IsStack() && shift == 0 ? Moved(right, left.amount, name)
                                         : CodeValue::Number(name);
  }
  return CodeValue::Number(name);
}

CodeValue CodeStep::Difference(const CodeValue& left, const CodeValue& right, uint8_t shift,
                               uint64_t name) const {
  if (right.IsConstant() && shift < kMostShift) {
    const uint64_t by = static_cast<uint64_t>(right.amount) << shift;
    return Moved(left, static_cast<int64_t>(0 - by), name);
  }
  CodeValue below = left;
  below.isBelow = true;
  return left.IsStack() ? below : CodeValue::Number(name);
}

// Of a stack address: what aligns it. Less than the alignment is lost.
CodeValue CodeStep::Masked(const CodeValue& value, uint64_t mask, uint64_t name) const {
  if (value.IsConstant()) {
    return Wrapped(static_cast<uint64_t>(value.amount) & mask);
  }
  if (value.IsReturn()) {
    return value;
  }
  const uint64_t alignment = (~mask & conventions_.numberMask) + 1;
  if (value.IsStack()) {
    const bool isAlignment = std::has_single_bit(alignment) && alignment <= (uint64_t{1} << 31);
    const auto known = uint64_t{conventions_.stackAlignment} | static_cast<uint64_t>(value.amount);
    const uint64_t step = known & (0 - known);  // it is a multiple of that
    const uint64_t lost = std::max(alignment, step) - step;
    return isAlignment ? Moved(value, -static_cast<int64_t>(lost), name) : CodeValue::Number(name);
  }
  if (value.IsPlain() && value.bound <= mask && std::has_single_bit(mask + 1)) {
    return value;
  }
  return CodeValue::Number(name, mask);
}

CodeValue CodeStep::Limited(const CodeValue& value, uint64_t limit, uint64_t name) {
  if (value.IsConstant()) {
    return CodeValue::Constant(static_cast<uint64_t>(value.amount) & limit);
  }
  if (value.IsTable()) {
    return value;
  }
  CodeValue limited = value.IsPlain() ? value : CodeValue::Number(name);
  limited.bound = std::min(limited.bound, limit);
  limited.isGiven = false;
  return limited;
}

CodeValue CodeStep::WithPart(const CodeValue& old, uint64_t immediate, uint8_t shift,
                             uint64_t name) const {
  const uint64_t part = uint64_t{0xFFFF} << shift;
  return old.IsConstant()
             ? Wrapped((static_cast<uint64_t>(old.amount) & ~part) | immediate << shift)
             : CodeValue::Number(name);
}

CodeValue CodeStep::SignExtended(const CodeValue& source, uint8_t width, uint64_t name) const {
  if (source.IsConstant()) {
    return Wrapped(static_cast<uint64_t>(
        ByteReader::Extended(static_cast<uint64_t>(source.amount), uint64_t{width} * 8)));
  }
  constexpr uint8_t kCompared = 4;  // comparisons tell of so many bytes
  const bool mayBeNegative =
      source.IsNumber() && width < kCompared && source.bound >= uint64_t{1} << (8 * width - 1);
  if (source.IsStack() || source.IsReturn() || mayBeNegative) {
    return CodeValue::Number(name);
  }
  CodeValue result = source;
  result.isSigned = source.IsTable() && (source.isSigned || source.width == width);
  return result;
}

std::optional<CodeValue> CodeStep::WithBits(const CodeInstruction& instruction,
                                            const CodeValue& source, const CodeValue& index,
                                            uint64_t name) const {
  const auto immediate = static_cast<uint64_t>(instruction.immediate);
  switch (instruction.operation) {
    case CodeOperation::kMask:
      return Masked(source, immediate, name);
    case CodeOperation::kSetBits:
      // In what an exception returns to, bits are flags.
      return source.IsReturn()     ? source
             : source.IsConstant() ? Wrapped(static_cast<uint64_t>(source.amount) | immediate)
                                   : CodeValue::Number(name);
    case CodeOperation::kMix: {  // as with stack pointers that are kept in disguise
      CodeValue mixed = CodeValue::Number(name);
      mixed.isGiven = source.IsGiven() && index.IsGiven();
      return mixed;
    }
    case CodeOperation::kLimit:
      return Limited(source, immediate, name);
    case CodeOperation::kExtendSign:
      return SignExtended(source, instruction.width, name);
    case CodeOperation::kShiftLeft:
      return ShiftedLeft(source, instruction.shift, name);
    case CodeOperation::kShiftRight:
      return ShiftedRight(source, instruction.shift, name);
    default:
      return std::nullopt;
  }
}

CodeValue CodeStep::ShiftedLeft(const CodeValue& value, uint8_t shift, uint64_t name) const {
  if (shift == 0) {
    return value;
  }
  if (value.IsConstant() && shift <= kMostShift) {
    return Wrapped(static_cast<uint64_t>(value.amount) << shift);
  }
  const bool isCounted = (value.IsNumber() || value.IsTable()) && value.amount == 0;
  if (!isCounted || value.shift + shift > kMostShift) {
    return CodeValue::Number(name);
  }
  CodeValue shifted = value;
  shifted.shift = static_cast<uint8_t>(value.shift + shift);
  return shifted;
}

CodeValue CodeStep::ShiftedRight(const CodeValue& value, uint8_t shift, uint64_t name) const {
  if (value.IsConstant()) {
    return CodeValue::Constant(static_cast<uint64_t>(value.amount) >> shift);
  }
  const uint64_t bound = value.IsPlain() ? value.bound : CodeValue::kNoBound;
  return CodeValue::Number(name, std::min(bound, conventions_.numberMask) >> shift);
}

}  // namespace velkor
