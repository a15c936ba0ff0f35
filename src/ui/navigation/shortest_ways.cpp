#include "ui/navigation/shortest_ways.h"

#include <algorithm>

#include "core/call_range.h"

namespace velkor::ui {

namespace {

constexpr int kCallsAtOnce = 4096;

}  // namespace

ShortestWays::ShortestWays(const StkFunctionTable& functions, const StkFunctionList& roots)
    : functions_(functions), caller_(functions.Count(), kNotReached) {
  reached_.reserve(functions.Count());
  for (const StkFunction* root : roots) {
    Reach(root->index, root->index);
  }
}

bool ShortestWays::Step() {
  for (int i = 0; i < kCallsAtOnce && followed_ < reached_.size(); ++i) {
    const uint32_t caller = reached_[followed_];
    const CallRange callees = AllCallees(*functions_.Functions()[caller]);
    if (callee_ < callees.size()) {
      Reach(callees[callee_++].index, caller);
    } else {
      ++followed_;
      callee_ = 0;
    }
  }
  return followed_ < reached_.size();
}

StkFunctionList ShortestWays::To(const StkFunction& function) const {
  StkFunctionList way;
  uint32_t at = function.index;
  if (at >= caller_.size() || caller_[at] == kNotReached) {
    return way;
  }
  way.push_back(functions_.Functions()[at]);
  while (caller_[at] != at) {
    at = caller_[at];
    way.push_back(functions_.Functions()[at]);
  }
  std::reverse(way.begin(), way.end());
  return way;
}

void ShortestWays::Reach(uint32_t function, uint32_t caller) {
  if (caller_[function] == kNotReached) {
    caller_[function] = caller;
    reached_.push_back(function);
  }
}

}  // namespace velkor::ui
