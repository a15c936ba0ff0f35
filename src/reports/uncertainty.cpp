#include "reports/uncertainty.h"

#include <algorithm>

namespace velkor::reports {

void NamedFunctions::Add(uint32_t function) {
  ++count;
  if (named.size() < kMostNamed) {
    named.push_back(function);
  }
}

UncertaintySearch::UncertaintySearch(const AnalysisResult& result, UncertaintyBudget budget)
    : result_(result), left_(budget), visitedBy_(result.functions.size(), 0) {
  firstCall_.reserve(visitedBy_.size() + 1);
  reasons_.reserve(visitedBy_.size());
  calls_.reserve(CountCalls());
  for (uint32_t function = 0; function < result.functions.size(); ++function) {
    firstCall_.push_back(static_cast<uint32_t>(calls_.size()));
    reasons_.push_back(result.functions[function].ownReasons);
    if (IsUnbounded(function)) {
      AddCalls(function);
    }
  }
  firstCall_.push_back(static_cast<uint32_t>(calls_.size()));
}

bool UncertaintySearch::IsUnbounded(uint32_t function) const {
  return result_.functions[function].state == BoundState::kUnbounded;
}

size_t UncertaintySearch::CountCalls() const {
  size_t count = 0;
  for (uint32_t function = 0; function < result_.functions.size(); ++function) {
    count += IsUnbounded(function) ? result_.AllCallees(function).size() : 0;
  }
  return count;
}

void UncertaintySearch::AddCalls(uint32_t function) {
  for (const uint32_t callee : result_.AllCallees(function)) {
    if (IsUnbounded(callee)) {  // below a bounded one there is nothing to find
      calls_.push_back(callee);
    }
  }
}

Uncertainty UncertaintySearch::Below(uint32_t start) {
  Uncertainty found;
  ++walk_;
  queue_.clear();
  if (IsUnbounded(start)) {
    Enter(start);
  }
  const uint64_t most = WalkBudget();
  uint64_t looked = 0;
  for (size_t next = 0; next < queue_.size(); ++next) {  // NOLINT(modernize-loop-convert): it grows
    const uint32_t function = queue_[next];
    if (!reasons_[function].empty()) {
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

void UncertaintySearch::Note(uint32_t function, Uncertainty& found) {
  for (const ReasonKind kind : kReasonKinds) {
    if (reasons_[function].Has(kind)) {
      found.byKind[static_cast<size_t>(kind)].Add(function);
    }
  }
}

void UncertaintySearch::Enter(uint32_t function) {
  if (visitedBy_[function] != walk_) {
    visitedBy_[function] = walk_;
    queue_.push_back(function);
  }
}

}  // namespace velkor::reports
