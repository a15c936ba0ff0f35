#include "core/function.h"

#include <algorithm>

namespace velkor {

bool StkFunction::CallsDirectly(const StkFunction& function) const {
  return std::ranges::find(callees, &function) != callees.end();
}

StkToldSource& StkFunction::Told() {
  if (told == nullptr) {
    told = std::make_unique<StkToldSource>();
  }
  return *told;
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

}  // namespace velkor
