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

FunctionKind StkFunction::Kind() const {
  if (adjustment != nullptr || Is(FN_LIBRARY)) {
    return FunctionKind::kSpecified;
  }
  if (Is(FN_RECURSIVE)) {
    return FunctionKind::kRecursive;
  }
  return Is(FN_DEFINED) ? FunctionKind::kDefined : FunctionKind::kUnknown;
}

int StkFunction::IconIndex(bool onMaximumChain, bool calleeRow) const {
  const int row = calleeRow ? 10 : 0;
  if (onMaximumChain) {
    return row;
  }
  switch (Kind()) {
    case FunctionKind::kSpecified:
      return row + 1;
    case FunctionKind::kRecursive:
      return row + 2;
    case FunctionKind::kUnknown:
      return row + 3;
    case FunctionKind::kDefined:
      break;
  }
  return row + 4;
}

}  // namespace velkor
