#include "core/detail/totals.h"

#include <algorithm>
#include <vector>

#include "core/detail/function_total.h"

namespace velkor {

namespace {

// The order jumps about in memory, so what a function needs is fetched while those before it are
// computed: first where its callees stand, then which they are, then their results.
constexpr size_t kFetchCallees = 8;
constexpr size_t kFetchResults = 4;

// Reads what it needs of the records in table order, computes in packed arrays and writes the
// results in table order.
class TotalsComputation {
 public:
  TotalsComputation(const StkFunctionTable& table, const CallGraph& graph,
                    const ComputationOrder& order)
      : table_(table),
        graph_(graph),
        order_(order),
        isRoot_(table.Count(), false),
        results_(table.Count()) {
    own_.reserve(table.Count());
  }

  StkFunctionList Run() {
    StkFunctionList pending = ReadRecords();
    for (size_t position = 0; position < order_.size(); ++position) {
      FetchAhead(position);
      Compute(order_.At(position));
    }
    WriteRecords();
    return pending;
  }

 private:
  struct Result {
    uint32_t total = 0;
    uint32_t maxCalleeSize = 0;
    uint32_t chainCount = 0;  // 0: not computed yet
  };

  StkFunctionList ReadRecords() {
    StkFunctionList pending;
    for (StkFunction* function : table_.Functions()) {
      own_.push_back(OwnSizeOf(*function));
      isRoot_[function->index] = function->Is(FN_ROOT);
      if (function->pendingAdjustment != nullptr) {
        pending.push_back(function);
      }
    }
    std::ranges::sort(pending, {}, [this](const StkFunction* function) {
      return order_.PositionOf(function->index);
    });
    return pending;
  }

  void FetchAhead(size_t position) const {
    if (position + 2 * kFetchCallees < order_.size()) {
      graph_.Prefetch(order_.At(position + 2 * kFetchCallees));
    }
    if (position + kFetchCallees < order_.size()) {
      const uint32_t later = order_.At(position + kFetchCallees);
      graph_.PrefetchCallees(later);
      __builtin_prefetch(&own_[later]);
    }
    if (position + kFetchResults < order_.size()) {
      for (const uint32_t callee : graph_.Callees(order_.At(position + kFetchResults))) {
        __builtin_prefetch(&results_[callee]);
      }
    }
  }

  void Compute(uint32_t function) {
    CalleeResults callees;
    for (const uint32_t callee : graph_.Callees(function)) {
      const Result& result = results_[callee];
      if (result.chainCount != 0) {
        callees.AddComputed(result.total, result.chainCount);
      } else {
        callees.AddUnfinished(isRoot_[callee]);
      }
    }
    const uint32_t maxSize = callees.MaxSize();
    results_[function] = {TotalOf(own_[function], maxSize, table_.SizeLimit()), maxSize,
                          callees.ChainCount()};
  }

  void WriteRecords() const {
    for (StkFunction* function : table_.Functions()) {
      const Result& result = results_[function->index];
      if (result.chainCount != 0) {
        function->totalStackSize = result.total;
        function->maxCalleeSize = result.maxCalleeSize;
        function->chainCount = static_cast<int32_t>(result.chainCount);
      }
    }
  }

  const StkFunctionTable& table_;
  const CallGraph& graph_;
  const ComputationOrder& order_;
  std::vector<OwnSize> own_;
  std::vector<bool> isRoot_;
  std::vector<Result> results_;
};

}  // namespace

StkFunctionList ComputeTotals(const StkFunctionTable& table, const CallGraph& graph,
                              const ComputationOrder& order) {
  return TotalsComputation(table, graph, order).Run();
}

}  // namespace velkor
