#pragma once

#include <algorithm>
#include <cstdint>

#include "core/function_table.h"

namespace velkor {

// The largest bound. Sums and products stay here instead of growing beyond; the number is the
// largest that every reader of JSON holds exactly.
constexpr uint64_t kMaxBound = (uint64_t{1} << 53) - 1;

// Of numbers up to kMaxBound.
inline uint64_t AddBounded(uint64_t left, uint64_t right) {
  return std::min(left + right, kMaxBound);
}
inline uint64_t MultiplyBounded(uint64_t left, uint64_t right) {
  return left != 0 && right > kMaxBound / left ? kMaxBound : left * right;
}

// Bytes that one activation of the function takes: its frame, and the margin of its adjustment, or
// where that states none its library size or fixed extra; the total that the input brings, where it
// does.
inline uint64_t ActivationSize(const StkFunctionTable& table, const StkFunction& function) {
  if (function.Is(FN_TOTAL_STATED)) {
    return table.BroughtTotal(function);
  }
  const uint64_t frame = std::min<uint64_t>(function.frameSize, uint64_t{table.SizeLimit()} + 1);
  const StkAppliedAdjustment* adjustment = function.adjustment.get();
  if (adjustment != nullptr && adjustment->margin != kNoMargin) {
    return frame + adjustment->margin;
  }
  return frame + (function.Is(FN_LIBRARY | FN_FIXED_EXTRA) ? function.librarySize : 0);
}

inline uint32_t StatedDepth(const StkFunction& function) {
  return function.adjustment != nullptr ? function.adjustment->depth : kNoDepth;
}

}  // namespace velkor
