#pragma once

#include <algorithm>
#include <cstdint>

#include "core/function.h"

namespace velkor::ui {

// 0 for an empty list.
inline uint32_t LargestTotal(StkFunctionSpan functions) {
  uint32_t largest = 0;
  for (const StkFunction* function : functions) {
    largest = std::max(largest, function->totalStackSize);
  }
  return largest;
}

// Among callees and extra callees: what a callee's total is compared with to be marked as standing
// on the maximum chain.
inline uint32_t LargestCalleeTotal(const StkFunction& function) {
  return std::max(LargestTotal(function.callees), LargestTotal(function.extraCallees));
}

}  // namespace velkor::ui
