#include "core/detail/maximum_chain.h"

#include "core/call_range.h"

namespace velkor {

namespace {

const StkFunction* FirstLargest(const StkFunction& caller) {
  const StkFunction* largest = nullptr;
  for (const StkFunction* callee : AllCallees(caller)) {
    if (largest == nullptr || callee->totalStackSize > largest->totalStackSize) {
      largest = callee;
    }
  }
  return largest;
}

}  // namespace

MaximumChains::MaximumChains(const StkFunctionTable& functions)
    : functions_(functions), steps_(functions.Count()) {}

StkFunctionList MaximumChains::From(const StkFunction& start) {
  StkFunctionList chain;
  ++chain_;
  for (uint32_t function = start.index; function != kEnd;) {
    chain.push_back(functions_.Functions()[function]);
    Step& step = StepFrom(function);
    if (step.chain == chain_) {
      break;
    }
    step.chain = chain_;
    function = step.next;
  }
  return chain;
}

MaximumChains::Step& MaximumChains::StepFrom(uint32_t function) {
  Step& step = steps_[function];
  if (step.next == kNotAsked) {
    const StkFunction* largest = FirstLargest(*functions_.Functions()[function]);
    step.next = largest == nullptr ? kEnd : largest->index;
  }
  return step;
}

}  // namespace velkor
