#include "core/maximum_chain.h"

#include <unordered_set>

namespace velkor {

namespace {

StkFunction* FirstLargest(const StkFunction& caller) {
  StkFunction* largest = nullptr;
  for (const StkFunctionList* list : {&caller.callees, &caller.extraCallees}) {
    for (StkFunction* callee : *list) {
      if (largest == nullptr || callee->totalStackSize > largest->totalStackSize) {
        largest = callee;
      }
    }
  }
  return largest;
}

}  // namespace

StkFunctionList FirstMaximumChain(StkFunction& start) {
  StkFunctionList chain;
  std::unordered_set<const StkFunction*> met;
  for (StkFunction* function = &start; function != nullptr; function = FirstLargest(*function)) {
    chain.push_back(function);
    if (!met.insert(function).second) {
      break;
    }
  }
  return chain;
}

}  // namespace velkor
