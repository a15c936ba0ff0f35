#include "core/maximum_chain.h"

#include <unordered_set>

namespace velkor {

namespace {

const StkFunction* FirstLargest(const StkFunction& caller) {
  const StkFunction* largest = nullptr;
  for (const StkFunctionList* list : {&caller.callees, &caller.extraCallees}) {
    for (const StkFunction* callee : *list) {
      if (largest == nullptr || callee->totalStackSize > largest->totalStackSize) {
        largest = callee;
      }
    }
  }
  return largest;
}

}  // namespace

MaximumChains::MaximumChains(const StkFunctionTable& functions)
    : functions_(functions), steps_(functions.Count()) {}

StkFunctionList MaximumChains::From(const StkFunction& start) {
  StkFunctionList chain;
  std::unordered_set<uint32_t> met;
  for (uint32_t function = start.index; function != kEnd;) {
    chain.push_back(functions_.Functions()[function]);
    const Step step = StepFrom(function);
    if (step.recursive && !met.insert(function).second) {
      break;
    }
    function = step.next;
  }
  return chain;
}

MaximumChains::Step MaximumChains::StepFrom(uint32_t function) {
  Step& step = steps_[function];
  if (step.next == kNotAsked) {
    const StkFunction& record = *functions_.Functions()[function];
    const StkFunction* largest = FirstLargest(record);
    step = {largest == nullptr ? kEnd : largest->index, record.Is(FN_RECURSIVE)};
  }
  return step;
}

}  // namespace velkor
