#include "core/detail/totals_update.h"

#include <bit>
#include <vector>

#include "core/call_range.h"
#include "core/detail/function_total.h"

namespace velkor {

namespace {

// A result only matters to callers that come later in the order, so one sweep over the positions
// meets everything: a bit for each tells whether the function is to be computed again.
class TotalsUpdate {
 public:
  TotalsUpdate(const StkFunctionTable& table, const ComputationOrder& order, uint32_t& overRoots)
      : table_(table),
        order_(order),
        overRoots_(overRoots),
        waiting_(order.size() / kBits + 1, 0) {}

  StkFunctionList Run(const StkFunctionList& touched) {
    for (const StkFunction* function : touched) {
      WaitAt(order_.PositionOf(function->index));
    }
    StkFunctionList pending;
    for (size_t word = 0; word < waiting_.size(); ++word) {
      while (waiting_[word] != 0) {
        const auto bit = static_cast<uint32_t>(std::countr_zero(waiting_[word]));
        waiting_[word] &= waiting_[word] - 1;
        StkFunction& function = At(word * kBits + bit);
        Compute(function);
        if (function.pendingAdjustment != nullptr) {
          pending.push_back(&function);
        }
      }
    }
    return pending;
  }

 private:
  static constexpr uint32_t kBits = 64;

  StkFunction& At(size_t position) const { return *table_.Functions()[order_.At(position)]; }

  void WaitAt(uint32_t position) {
    if (position != ComputationOrder::kNone) {
      waiting_[position / kBits] |= uint64_t{1} << position % kBits;
    }
  }

  void Compute(StkFunction& function) {
    const uint32_t position = order_.PositionOf(function.index);
    const CalleeResults callees = ResultsBelow(function, position);
    const uint32_t total = TotalOf(OwnSizeOf(function), callees.MaxSize(), table_.SizeLimit());
    const auto chainCount = static_cast<int32_t>(callees.ChainCount());
    function.maxCalleeSize = callees.MaxSize();
    if (total == function.totalStackSize && chainCount == function.chainCount) {
      return;
    }
    if (function.Is(FN_ROOT)) {
      overRoots_ += total == kOverSize ? 1u : 0u;
      overRoots_ -= function.totalStackSize == kOverSize ? 1u : 0u;
    }
    function.totalStackSize = total;
    function.chainCount = chainCount;
    WakeCallers(function, position);
  }

  CalleeResults ResultsBelow(const StkFunction& function, uint32_t position) const {
    CalleeResults results;
    for (const StkFunction* callee : AllCallees(function)) {
      if (order_.PositionOf(callee->index) < position) {
        results.AddComputed(callee->totalStackSize, static_cast<uint32_t>(callee->chainCount));
      } else {
        results.AddUnfinished(callee->Is(FN_ROOT));
      }
    }
    return results;
  }

  void WakeCallers(const StkFunction& function, uint32_t position) {
    for (const auto callers :
         {table_.Callers(function.index), table_.ExtraCallers(function.index)}) {
      for (const uint32_t caller : callers) {
        const uint32_t later = order_.PositionOf(caller);
        if (later > position) {
          WaitAt(later);
        }
      }
    }
  }

  const StkFunctionTable& table_;
  const ComputationOrder& order_;
  uint32_t& overRoots_;
  std::vector<uint64_t> waiting_;  // by position
};

}  // namespace

StkFunctionList UpdateTotals(const StkFunctionTable& table, const ComputationOrder& order,
                             const StkFunctionList& touched, uint32_t& overRoots) {
  return TotalsUpdate(table, order, overRoots).Run(touched);
}

}  // namespace velkor
