#include "core/computation.h"

#include <algorithm>

#include "core/components.h"
#include "core/top_level.h"

namespace velkor {

namespace {

// How many functions ahead of the one that is computed a record is fetched: the order jumps about
// in memory.
constexpr size_t kFetchAhead = 8;

// What a function's callees bring to it.
struct CalleeResults {
  uint32_t maxSize = 0;
  uint64_t chains = 0;
};

// The results so far, packed, so that looking at a callee touches no record.
//
// The functions come in the order in which a depth-first walk leaves them: a callee either has a
// result already, or it is just being computed further up the path of the walk (or is the function
// itself). Of the latter, the top-level function at the head of the path counts for nothing and
// any other ends one chain. No other function of a path is top-level: a top-level function that
// can be reached from another one stands before it in the table, or the other's mark would have
// kept it from being top-level; so it has its result by then.
class ResultsSoFar {
 public:
  ResultsSoFar(const CallGraph& graph, const StkFunctionList& roots)
      : graph_(graph),
        results_(graph.Count()),
        isComputed_(graph.Count(), false),
        isRoot_(graph.Count(), false) {
    for (const StkFunction* root : roots) {
      isRoot_[root->index] = true;
    }
  }

  CalleeResults OfCallees(uint32_t function) const {
    CalleeResults gathered;
    for (const uint32_t callee : graph_.Callees(function)) {
      if (isComputed_[callee]) {
        gathered.maxSize = std::max(gathered.maxSize, results_[callee].total);
        gathered.chains += results_[callee].chains;
      } else if (!isRoot_[callee]) {
        ++gathered.chains;
      }
    }
    return gathered;
  }

  void Add(const StkFunction& function) {
    results_[function.index] = {function.totalStackSize,
                                static_cast<uint32_t>(function.chainCount)};
    isComputed_[function.index] = true;
  }

 private:
  struct Result {
    uint32_t total;
    uint32_t chains;
  };

  const CallGraph& graph_;
  std::vector<Result> results_;
  std::vector<bool> isComputed_;
  std::vector<bool> isRoot_;
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
  const std::vector<uint32_t> marked = ReadCalls();
  const Components components = FindComponents(*graph_);
  const std::vector<bool> topLevel = DecideTopLevel(*graph_, components, marked);
  for (const auto& function : table_.Functions()) {
    const bool recursive = components.recursive[components.of[function->index]];
    function->flags &= ~uint32_t{FN_RECURSIVE | FN_ROOT};
    function->flags |= recursive ? uint32_t{FN_RECURSIVE} : 0u;
    if (topLevel[function->index]) {
      function->flags |= FN_ROOT;
      roots_.functions_.push_back(function.get());
    }
  }
  FindOrder();
}

// One pass over the records does all that needs one. Answers the functions marked FN_ROOT.
std::vector<uint32_t> StkComputation::ReadCalls() {
  CallGraph& graph = graph_.emplace();
  std::vector<uint32_t> marked;
  StkFunctionList withExtraCallees;
  for (const auto& function : table_.Functions()) {
    function->extraCallers.clear();
    if (const StkAdjustment* pending = function->pendingAdjustment.get()) {
      function->extraCallees = pending->callees.value_or(StkFunctionList());
    }
    if (!function->extraCallees.empty()) {
      withExtraCallees.push_back(function.get());
    }
    if (function->Is(FN_ROOT)) {
      marked.push_back(function->index);
    }
    graph.Append(*function);
  }
  for (StkFunction* function : withExtraCallees) {
    for (StkFunction* callee : function->extraCallees) {
      callee->extraCallers.push_back(function);
    }
  }
  return marked;
}

void StkComputation::FindOrder() {
  std::vector<uint32_t>& order = roots_.order_;
  order.clear();
  order.reserve(graph_->Count());
  std::vector<bool> entered(graph_->Count(), false);
  std::vector<CallCursor> path;
  const auto enter = [&](uint32_t function) {
    if (!entered[function]) {
      entered[function] = true;
      path.emplace_back(function, graph_->Callees(function));
    }
  };
  for (const StkFunction* root : roots_.functions_) {
    enter(root->index);
    while (!path.empty()) {
      CallCursor& calls = path.back();
      if (calls.AtEnd()) {
        order.push_back(calls.function);
        path.pop_back();
      } else {
        enter(*calls.next++);
      }
    }
  }
}

StkFunctionList StkComputation::ComputeTotals() {
  if (!graph_) {
    graph_.emplace(table_);
  }
  const std::vector<uint32_t>& order = roots_.order_;
  if (order.size() != graph_->Count()) {
    FindOrder();
  }
  StkFunctionList pending;
  ResultsSoFar results(*graph_, roots_.functions_);
  for (size_t i = 0; i < order.size(); ++i) {
    if (i + kFetchAhead < order.size()) {
      __builtin_prefetch(&table_.Functions()[order[i + kFetchAhead]]->totalStackSize, 1);
    }
    StkFunction& function = *table_.Functions()[order[i]];
    const CalleeResults callees = results.OfCallees(function.index);
    function.maxCalleeSize = callees.maxSize;
    function.chainCount = static_cast<int32_t>(
        std::clamp<uint64_t>(callees.chains, 1, static_cast<uint64_t>(kMaxChainCount)));
    function.totalStackSize = TotalOf(function, callees.maxSize);
    results.Add(function);
    if (function.pendingAdjustment != nullptr) {
      pending.push_back(&function);
    }
  }
  const auto isOver = [](const StkFunction* root) { return root->totalStackSize == kOverSize; };
  table_.SetOverflow(std::any_of(roots_.functions_.begin(), roots_.functions_.end(), isOver));
  return pending;
}

}  // namespace velkor
