#include "core/chain_count.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

#include "core/detail/call_graph.h"
#include "core/detail/components.h"

namespace velkor {

namespace {

constexpr uint64_t kLimit = static_cast<uint64_t>(kMaxChainCount);
constexpr uint64_t kMaxSteps = 4'000'000;

// The functions below one start function along the callees with the largest totals, numbered in
// the order in which they are met; the start function is 0.
CallGraph MaximumGraph(const StkFunction& start) {
  NextCallees next(ChainMode::kMaximum);
  std::vector<const StkFunction*> functions{&start};
  std::unordered_map<const StkFunction*, uint32_t> numbers{{&start, 0}};
  CallGraph graph;
  std::vector<uint32_t> callees;
  for (size_t i = 0; i < functions.size(); ++i) {
    const StkFunction& function = *functions[i];
    callees.clear();
    for (size_t k = 0; k < next.Count(function); ++k) {
      const StkFunction& callee = next.At(function, k);
      const auto [entry, added] =
          numbers.try_emplace(&callee, static_cast<uint32_t>(functions.size()));
      if (added) {
        functions.push_back(&callee);
      }
      callees.push_back(entry->second);
    }
    graph.Append(callees);
  }
  return graph;
}

// Counts from the callees up. A chain that enters a component never comes back into one above it,
// so the number of chains from a function does not depend on the way by which its component was
// entered; within a component it does, and every way is walked.
class MaximumChainCount {
 public:
  explicit MaximumChainCount(const CallGraph& graph)
      : graph_(graph),
        components_(FindComponents(graph)),
        entered_(graph.Count(), false),
        counts_(graph.Count(), 0),
        onPath_(graph.Count(), false) {}

  int32_t Run() {
    FindEntries();
    for (uint32_t component = 0; component < components_.Count(); ++component) {
      for (const uint32_t member : components_.Members(component)) {
        if (entered_[member]) {
          counts_[member] = components_.recursive[component] ? Walk(member) : Sum(member);
        }
      }
    }
    return static_cast<int32_t>(counts_[0]);
  }

 private:
  // Where chains come into each component.
  void FindEntries() {
    entered_[0] = true;
    for (uint32_t function = 0; function < graph_.Count(); ++function) {
      for (const uint32_t callee : graph_.Callees(function)) {
        if (components_.of[callee] != components_.of[function]) {
          entered_[callee] = true;
        }
      }
    }
  }

  uint64_t Sum(uint32_t function) const {
    uint64_t sum = 0;
    for (const uint32_t callee : graph_.Callees(function)) {
      sum = std::min(sum + counts_[callee], kLimit);
    }
    return std::max<uint64_t>(sum, 1);
  }

  uint64_t Walk(uint32_t entry) {
    uint64_t count = 0;
    Push(entry);
    while (!path_.empty()) {
      CallCursor& calls = path_.back();
      if (calls.AtEnd()) {
        onPath_[calls.function] = false;
        path_.pop_back();
        continue;
      }
      const uint32_t callee = *calls.next++;
      if (++steps_ > kMaxSteps) {
        count = kLimit;
      } else if (components_.of[callee] != components_.of[entry]) {
        count = std::min(count + counts_[callee], kLimit);
      } else if (onPath_[callee]) {
        count = std::min(count + 1, kLimit);
      } else {
        Push(callee);
      }
      if (count == kLimit) {
        Abandon();
      }
    }
    return count;
  }

  void Push(uint32_t function) {
    onPath_[function] = true;
    path_.emplace_back(function, graph_.Callees(function));
  }

  void Abandon() {
    for (const CallCursor& calls : path_) {
      onPath_[calls.function] = false;
    }
    path_.clear();
  }

  const CallGraph& graph_;
  const Components components_;
  std::vector<bool> entered_;
  std::vector<uint64_t> counts_;
  std::vector<bool> onPath_;
  std::vector<CallCursor> path_;
  uint64_t steps_ = 0;
};

}  // namespace

int32_t CountChains(const StkFunction& start, ChainMode mode) {
  if (mode == ChainMode::kAll) {
    return start.chainCount;
  }
  const CallGraph graph = MaximumGraph(start);
  return MaximumChainCount(graph).Run();
}

}  // namespace velkor
