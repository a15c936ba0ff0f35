#include "cli/uncertainty.h"

#include <algorithm>

#include "core/adjustments.h"

namespace velkor {

void NamedFunctions::Add(StkFunction& function) {
  ++count;
  if (named.size() < kMostNamed) {
    named.push_back(&function);
  }
}

UncertaintySearch::UncertaintySearch(const AnalysisResult& result, UncertaintyBudget budget)
    : result_(result), left_(budget), visitedBy_(result.functions.Count(), 0) {
  firstCall_.reserve(visitedBy_.size() + 1);
  kinds_.reserve(visitedBy_.size());
  for (const auto& function : result.functions.Functions()) {
    firstCall_.push_back(static_cast<uint32_t>(calls_.size()));
    const bool complete = result.IsComplete(*function);
    kinds_.push_back(complete ? uint8_t{0} : KindsOf(*function));
    if (!complete) {
      AddCalls(function->callees);
      AddCalls(function->extraCallees);
    }
  }
  firstCall_.push_back(static_cast<uint32_t>(calls_.size()));
}

uint8_t UncertaintySearch::KindsOf(const StkFunction& function) {
  if (!IsSizeUnknown(function)) {
    return 0;
  }
  return static_cast<uint8_t>((function.Is(FN_DEFINED) ? 0 : kUnknown) |
                              (function.Is(FN_RECURSIVE) ? kRecursive : 0) |
                              (function.Is(FN_INDIRECT_CALL) ? kIndirect : 0));
}

void UncertaintySearch::AddCalls(const StkFunctionList& callees) {
  for (const StkFunction* callee : callees) {
    const uint32_t index = result_.functions.IndexOf(*callee);
    if (!result_.complete[index]) {  // below a complete one there is nothing to find
      calls_.push_back(index);
    }
  }
}

Uncertainty UncertaintySearch::Below(StkFunction& start) {
  Uncertainty found;
  ++walk_;
  queue_.clear();
  if (!result_.IsComplete(start)) {
    Enter(start.index);
  }
  const uint64_t most = WalkBudget();
  uint64_t looked = 0;
  for (size_t next = 0; next < queue_.size(); ++next) {  // NOLINT(modernize-loop-convert): it grows
    const uint32_t function = queue_[next];
    if (kinds_[function] != 0) {
      Note(function, found);
    }
    const uint32_t end = firstCall_[function + 1];
    const uint64_t calls = uint64_t{1} + end - firstCall_[function];
    if (looked + calls > most) {
      looked = most;
      found.cutShort = true;
      break;
    }
    looked += calls;
    for (uint32_t call = firstCall_[function]; call < end; ++call) {
      Enter(calls_[call]);
    }
  }
  Spend(looked);
  return found;
}

uint64_t UncertaintySearch::WalkBudget() const {
  return std::min(left_.all, std::max(left_.exact, left_.walk));
}

void UncertaintySearch::Spend(uint64_t calls) {
  left_.all -= calls;
  left_.exact -= std::min(left_.exact, calls);
}

void UncertaintySearch::Note(uint32_t index, Uncertainty& found) {
  StkFunction& function = *result_.functions.Functions()[index];
  if ((kinds_[index] & kUnknown) != 0) {
    found.unknown.Add(function);
  }
  if ((kinds_[index] & kRecursive) != 0) {
    found.recursive.Add(function);
  }
  if ((kinds_[index] & kIndirect) != 0) {
    found.indirect.Add(function);
  }
}

void UncertaintySearch::Enter(uint32_t function) {
  if (visitedBy_[function] != walk_) {
    visitedBy_[function] = walk_;
    queue_.push_back(function);
  }
}

}  // namespace velkor
