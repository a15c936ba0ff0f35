#include "core/detail/computation.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "core/detail/components_ahead.h"
#include "core/detail/top_level.h"
#include "core/detail/totals.h"
#include "core/detail/totals_update.h"

namespace velkor {

namespace {

bool HasPending(const StkFunction* function) {
  return function->pendingAdjustment != nullptr;
}

}  // namespace

void StkComputation::Rebuild() {
  roots_.Clear();
  table_.NoteRearrangedCallees();
  table_.NoteStructureChange();
  table_.boundComponents_.reset();
  const std::vector<uint32_t> marked = ReadCalls();
  std::optional<CallGraph> boundCalls;
  if (!table_.broughtTotals_.empty()) {
    boundCalls = CallGraph::OfBounds(table_);
  }
  ComponentsAhead boundComponents(boundCalls ? *boundCalls : *graph_, table_.threads_);
  const std::vector<uint32_t> uncalled = graph_->UncalledFunctions();
  Components components = FindComponents(*graph_, uncalled);
  MarkRecursion(components);
  const std::vector<uint32_t> topLevel =
      WithEntries(DecideTopLevel(*graph_, components, uncalled, marked));
  table_.leadsToRecursion_.clear();
  // Where a recursion can be top-level, the next rebuilding may decide otherwise with these marks.
  table_.keepsTopLevel_ = components.belowStarts == components.Count();
  MarkTopLevel(topLevel);
  // Both walks begin alike, up to the first top-level function that something calls.
  const auto [root, start] = std::ranges::mismatch(topLevel, uncalled);
  std::vector<uint32_t> order = std::move(components.order);
  order.erase(start == uncalled.begin() ? order.begin()
                                        : std::next(std::ranges::find(order, *std::prev(start))),
              order.end());
  FindOrder(std::move(order), static_cast<size_t>(root - topLevel.begin()));
  table_.boundComponents_ = boundComponents.Take();
}

// One pass over the records does all that needs one. Answers the functions marked FN_ROOT.
std::vector<uint32_t> StkComputation::ReadCalls() {
  CallGraph& graph = graph_.emplace();
  entries_.clear();
  std::vector<uint32_t> marked;
  ExtraCallerLists extraCallers;
  for (StkFunction* function : table_.Functions()) {
    if (const StkAdjustment* pending = function->pendingAdjustment.get()) {
      function->extraCallees = pending->callees.value_or(StkFunctionList());
    }
    for (const StkFunction* callee : function->extraCallees) {
      extraCallers.Add(table_.IndexOf(*callee), function->index);
    }
    if (function->Is(FN_ROOT)) {
      marked.push_back(function->index);
      function->flags &= ~uint32_t{FN_ROOT};
    }
    if (function->Is(FN_ENTRY)) {
      entries_.push_back(function->index);
    }
    graph.Append(table_, *function);
  }
  table_.extraCallers_ = std::move(extraCallers);
  return marked;
}

void StkComputation::MarkRecursion(const Components& components) {
  for (StkFunction* function : table_.Functions()) {
    const bool recursive = components.recursive[components.of[function->index]];
    function->flags &= ~uint32_t{FN_RECURSIVE};
    function->flags |= recursive ? uint32_t{FN_RECURSIVE} : 0u;
  }
}

// Ascending, as they are.
std::vector<uint32_t> StkComputation::WithEntries(std::vector<uint32_t> topLevel) const {
  if (entries_.empty()) {
    return topLevel;
  }
  std::vector<uint32_t> all;
  std::ranges::set_union(topLevel, entries_, std::back_inserter(all));
  return all;
}

void StkComputation::MarkTopLevel(const std::vector<uint32_t>& topLevel) {
  for (const uint32_t index : topLevel) {
    StkFunction* root = table_.Functions()[index];
    root->flags |= FN_ROOT;
    roots_.functions_.push_back(root);
  }
}

void StkComputation::FindOrder(std::vector<uint32_t> order, size_t firstRoot) {
  order.reserve(graph_->Count());
  std::vector<bool> entered(graph_->Count(), false);
  for (const uint32_t function : order) {
    entered[function] = true;
  }
  std::vector<CallCursor> path;
  const auto enter = [&](uint32_t function) {
    if (!entered[function]) {
      entered[function] = true;
      path.emplace_back(function, graph_->Callees(function));
      for (const uint32_t callee : graph_->Callees(function)) {
        graph_->Prefetch(callee);
      }
    }
  };
  for (size_t i = firstRoot; i < roots_.size(); ++i) {
    enter(roots_.functions_[i]->index);
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
  table_.order_ = ComputationOrder(std::move(order), graph_->Count());
}

StkFunctionList StkComputation::ComputeTotals() {
  const StkFunctionList touched = table_.TakeTouched();
  StkFunctionList pending;
  // What is posted of pending adjustments follows the walk.
  if (!table_.order_.IsOfWalk() && std::ranges::any_of(touched, HasPending)) {
    table_.NoteRearrangedCallees();
  }
  if (!graph_ && table_.order_.size() == table_.Count()) {
    pending = UpdateTotals(table_, table_.order_, touched, table_.overLimitRoots_);
  } else {
    if (!graph_) {
      graph_.emplace(table_);
      FindOrder({}, 0);
    }
    pending = velkor::ComputeTotals(table_, *graph_, table_.order_);
    const auto isOver = [](const StkFunction* root) { return root->totalStackSize == kOverSize; };
    table_.overLimitRoots_ =
        static_cast<uint32_t>(std::ranges::count_if(roots_.functions_, isOver));
  }
  return pending;
}

}  // namespace velkor
