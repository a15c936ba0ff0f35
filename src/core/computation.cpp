#include "core/computation.h"

#include <algorithm>

#include "core/components.h"
#include "core/top_level.h"

namespace velkor {

namespace {

constexpr uint32_t kNoPosition = 0xFFFFFFFF;

// What a function's callees bring to it.
struct CalleeResults {
  uint32_t maxSize = 0;
  uint64_t chains = 0;
};

// The results so far, packed, so that looking at a callee touches no record.
//
// The order is that of a depth-first walk: when a function is computed, each callee is either
// computed already, and then comes before it, or is just being computed further up the path, and
// then comes after it (or is the function itself). Of the latter, the top-level function at the
// head of the path counts for nothing and any other ends one chain. No other function of a path
// is top-level: a top-level function that can be reached from another one stands before it in the
// table, or the other's mark would have kept it from being top-level; so it is computed by then.
class ResultsSoFar {
 public:
  ResultsSoFar(const CallGraph& graph, const std::vector<uint32_t>& position,
               const StkFunctionList& roots)
      : graph_(graph),
        position_(position),
        isRoot_(graph.Count(), false),
        totals_(graph.Count(), 0),
        chainCounts_(graph.Count(), 1) {
    for (const StkFunction* root : roots) {
      isRoot_[root->index] = true;
    }
  }

  CalleeResults OfCallees(uint32_t function) const {
    CalleeResults results;
    for (const uint32_t callee : graph_.Callees(function)) {
      if (position_[callee] < position_[function]) {
        results.maxSize = std::max(results.maxSize, totals_[callee]);
        results.chains += static_cast<uint64_t>(chainCounts_[callee]);
      } else if (!isRoot_[callee]) {
        ++results.chains;
      }
    }
    return results;
  }

  void Add(const StkFunction& function) {
    totals_[function.index] = function.totalStackSize;
    chainCounts_[function.index] = function.chainCount;
  }

 private:
  const CallGraph& graph_;
  const std::vector<uint32_t>& position_;
  std::vector<bool> isRoot_;
  std::vector<uint32_t> totals_;
  std::vector<int32_t> chainCounts_;
};

struct AdjustmentValues {
  uint32_t margin;
  uint32_t depth;
};

uint64_t Adjusted(const StkFunction& function, uint64_t size, AdjustmentValues values) {
  uint64_t total = size;
  if (values.margin != kNoMargin) {
    total += values.margin;
  }
  // Within the limit the product stays far from 64 bits; beyond it nothing makes it smaller.
  if (function.Is(FN_RECURSIVE) && values.depth != kNoDepth && total <= kSizeLimit) {
    total *= values.depth;
  }
  return total;
}

uint32_t TotalOf(const StkFunction& function, uint32_t maxCalleeSize) {
  if (function.frameSize > kSizeLimit || maxCalleeSize > kSizeLimit) {
    return kOverSize;
  }
  uint64_t total = uint64_t{function.frameSize} + maxCalleeSize;
  if (total > kSizeLimit) {
    return kOverSize;
  }
  if (const StkAdjustment* pending = function.pendingAdjustment.get()) {
    total = Adjusted(function, total, {pending->margin, pending->depth});
  } else if (const StkAppliedAdjustment* applied = function.adjustment.get()) {
    total = Adjusted(function, total, {applied->margin, applied->depth});
  } else if (function.Is(FN_LIBRARY | FN_FIXED_EXTRA)) {
    total += function.librarySize;
  }
  return total > kSizeLimit ? kOverSize : static_cast<uint32_t>(total);
}

}  // namespace

void StkComputation::Rebuild() {
  roots_.Clear();
  LinkExtraCallees();
  graph_.emplace(table_);
  MarkFunctions();
  FindOrder();
}

void StkComputation::LinkExtraCallees() {
  for (const auto& function : table_.Functions()) {
    function->extraCallers.clear();
    if (const StkAdjustment* pending = function->pendingAdjustment.get()) {
      function->extraCallees = pending->callees.value_or(StkFunctionList());
    }
  }
  for (const auto& function : table_.Functions()) {
    for (StkFunction* callee : function->extraCallees) {
      callee->extraCallers.push_back(function.get());
    }
  }
}

void StkComputation::MarkFunctions() {
  const Components components = FindComponents(*graph_);
  const std::vector<bool> topLevel = DecideTopLevel(table_, *graph_, components);
  for (const auto& function : table_.Functions()) {
    function->flags &= ~uint32_t{FN_RECURSIVE | FN_ROOT};
    if (components.recursive[components.of[function->index]]) {
      function->flags |= FN_RECURSIVE;
    }
    if (topLevel[function->index]) {
      function->flags |= FN_ROOT;
      roots_.functions_.push_back(function.get());
    }
  }
}

void StkComputation::FindOrder() {
  const CallGraph& graph = *graph_;
  std::vector<uint32_t>& order = roots_.order_;
  order.clear();
  order.reserve(graph.Count());
  roots_.position_.assign(graph.Count(), kNoPosition);
  std::vector<bool> entered(graph.Count(), false);
  std::vector<CallCursor> path;
  for (const StkFunction* root : roots_.functions_) {
    if (!entered[root->index]) {
      entered[root->index] = true;
      path.emplace_back(graph, root->index);
    }
    while (!path.empty()) {
      CallCursor& calls = path.back();
      if (calls.AtEnd()) {
        roots_.position_[calls.function] = static_cast<uint32_t>(order.size());
        order.push_back(calls.function);
        path.pop_back();
        continue;
      }
      const uint32_t callee = *calls.next++;
      if (!entered[callee]) {
        entered[callee] = true;
        path.emplace_back(graph, callee);
      }
    }
  }
}

const std::vector<uint32_t>& StkComputation::ComputeTotals() {
  if (!graph_) {
    graph_.emplace(table_);
  }
  if (roots_.position_.size() != graph_->Count()) {
    FindOrder();
  }
  ResultsSoFar results(*graph_, roots_.position_, roots_.functions_);
  for (const uint32_t index : roots_.order_) {
    StkFunction& function = *table_.Functions()[index];
    const CalleeResults callees = results.OfCallees(index);
    function.maxCalleeSize = callees.maxSize;
    function.chainCount = static_cast<int32_t>(
        std::clamp<uint64_t>(callees.chains, 1, static_cast<uint64_t>(kMaxChainCount)));
    function.totalStackSize = TotalOf(function, callees.maxSize);
    results.Add(function);
  }
  const auto isOver = [](const StkFunction* root) { return root->totalStackSize == kOverSize; };
  table_.SetOverflow(std::any_of(roots_.functions_.begin(), roots_.functions_.end(), isOver));
  return roots_.order_;
}

}  // namespace velkor
