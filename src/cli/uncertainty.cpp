#include "cli/uncertainty.h"

#include "core/adjustments.h"

namespace velkor {

void NamedFunctions::Add(StkFunction& function) {
  ++count;
  if (named.size() < kMostNamed) {
    named.push_back(&function);
  }
}

UncertaintySearch::UncertaintySearch(const AnalysisResult& result, uint64_t mostCalls)
    : result_(result), callsLeft_(mostCalls), visitedBy_(result.functions.Count(), 0) {}

Uncertainty UncertaintySearch::Below(StkFunction& start) {
  Uncertainty found;
  ++walk_;
  queue_.clear();
  Enter({&start});
  for (size_t next = 0; next < queue_.size(); ++next) {
    StkFunction& function = *queue_[next];
    Note(function, found);
    const uint64_t calls = 1 + function.callees.size() + function.extraCallees.size();
    if (calls > callsLeft_) {
      callsLeft_ = 0;
      found.cutShort = true;
      break;
    }
    callsLeft_ -= calls;
    Enter(function.callees);
    Enter(function.extraCallees);
  }
  return found;
}

void UncertaintySearch::Note(StkFunction& function, Uncertainty& found) {
  if (!IsSizeUnknown(function)) {
    return;
  }
  if (!function.Is(FN_DEFINED)) {
    found.unknown.Add(function);
  }
  if (function.Is(FN_RECURSIVE)) {
    found.recursive.Add(function);
  }
  if (function.Is(FN_INDIRECT_CALL)) {
    found.indirect.Add(function);
  }
}

// Below a complete function there is nothing to find.
void UncertaintySearch::Enter(const StkFunctionList& callees) {
  for (StkFunction* callee : callees) {
    if (visitedBy_[callee->index] != walk_ && !result_.IsComplete(*callee)) {
      visitedBy_[callee->index] = walk_;
      queue_.push_back(callee);
    }
  }
}

}  // namespace velkor
