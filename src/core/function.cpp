#include "core/function.h"

#include <algorithm>

namespace velkor {

bool StkFunction::CallsDirectly(const StkFunction& function) const {
  return std::ranges::find(callees, &function) != callees.end();
}

void StkFunction::AddCaller(StkFunction& caller) {
  if (std::ranges::find(callers, &caller) == callers.end()) {
    callers.push_back(&caller);
  }
}

void StkFunction::SetFixedExtra() {
  flags |= FN_FIXED_EXTRA;
  librarySize = kFixedExtraSize;
}

int StkFunction::IconIndex(bool onMaximumChain, bool calleeRow) const {
  const int row = calleeRow ? 10 : 0;
  if (onMaximumChain) {
    return row;
  }
  if (adjustment || Is(FN_LIBRARY)) {
    return row + 1;
  }
  if (Is(FN_RECURSIVE)) {
    return row + 2;
  }
  return row + (Is(FN_DEFINED) ? 4 : 3);
}

}  // namespace velkor
