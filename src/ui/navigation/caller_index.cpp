#include "ui/navigation/caller_index.h"

#include "core/call_range.h"

namespace velkor::ui {

namespace {

constexpr int kCallsOfAStep = 4096;
constexpr uint32_t kNobody = 0xFFFFFFFF;

}  // namespace

CallerIndex::CallerIndex(const StkFunctionTable& functions)
    : functions_(functions),
      first_(size_t{functions.Count()} + 1, 0),
      lastCaller_(functions.Count(), kNobody) {}

bool CallerIndex::Step() {
  switch (round_) {
    case Round::kCount:
      VisitSome([this](uint32_t callee) { ++first_[callee]; });
      break;
    case Round::kEnter:
      VisitSome([this](uint32_t callee) { callers_[first_[callee]++] = caller_; });
      break;
    case Round::kDone:
      return false;
  }
  if (caller_ == lastCaller_.size()) {
    EndRound();
  }
  return round_ != Round::kDone;
}

std::span<const uint32_t> CallerIndex::Of(const StkFunction& function) const {
  if (size_t{function.index} + 1 >= first_.size()) {
    return {};
  }
  const uint32_t begin = first_[function.index];
  return std::span(callers_).subspan(begin, first_[function.index + 1] - begin);
}

// A callee that is an extra callee too is called once.
template <typename Visit>
void CallerIndex::VisitSome(const Visit& visit) {
  for (int i = 0; i < kCallsOfAStep && caller_ < lastCaller_.size(); ++i) {
    const CallRange callees = AllCallees(*functions_.Functions()[caller_]);
    if (callee_ == callees.size()) {
      ++caller_;
      callee_ = 0;
      continue;
    }
    const uint32_t callee = callees[callee_++].index;
    if (lastCaller_[callee] != caller_) {
      lastCaller_[callee] = caller_;
      visit(callee);
    }
  }
}

void CallerIndex::EndRound() {
  caller_ = 0;
  if (round_ == Round::kCount) {
    uint32_t sum = 0;
    for (uint32_t& first : first_) {
      const uint32_t count = first;
      first = sum;
      sum += count;
    }
    callers_.resize(sum);
    lastCaller_.assign(lastCaller_.size(), kNobody);
    round_ = Round::kEnter;
    return;
  }
  // Each stands where the next one's begin.
  first_.pop_back();
  first_.insert(first_.begin(), 0);
  round_ = Round::kDone;
}

}  // namespace velkor::ui
