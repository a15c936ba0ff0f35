#include "core/detail/callee_update.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <vector>

#include "core/call_range.h"
#include "core/detail/calls_between.h"
#include "core/detail/components.h"

namespace velkor {

namespace {

bool ByIndex(const StkFunction* left, const StkFunction* right) {
  return left->index < right->index;
}

// Those of the first list that the second one has not, each as often as it is missing.
StkFunctionList Missing(StkFunctionList first, StkFunctionList second) {
  std::ranges::sort(first, ByIndex);
  std::ranges::sort(second, ByIndex);
  StkFunctionList missing;
  std::ranges::set_difference(first, second, std::back_inserter(missing), ByIndex);
  return missing;
}

// Of the list, in its order, what is in neither of the others, which are sorted.
StkFunctionList Without(const StkFunctionList& list, const StkFunctionList& added,
                        const StkFunctionList& taken) {
  StkFunctionList kept;
  std::ranges::copy_if(list, std::back_inserter(kept), [&](const StkFunction* function) {
    return !std::ranges::binary_search(added, function, ByIndex) &&
           !std::ranges::binary_search(taken, function, ByIndex);
  });
  return kept;
}

}  // namespace

bool CalleeUpdate::Follow(std::span<const CalleeChange> changes) {
  if (changes.empty() || !CanFollow()) {
    return false;
  }
  if (table_.leadsToRecursion_.empty()) {
    FindWhatLeadsToRecursion();
  }
  return std::ranges::all_of(changes,
                             [this](const CalleeChange& change) { return Follow(change); });
}

// Callees that are read and not yet in force come into the graph with the next rebuilding.
bool CalleeUpdate::CanFollow() const {
  return table_.keepsTopLevel_ && table_.order_.size() == table_.Count() &&
         std::ranges::all_of(table_.touched_, [](const StkFunction* function) {
           return function->pendingAdjustment == nullptr;
         });
}

// A callee comes before its caller, unless both are recursive, or it is new: then what it leads to
// decides whether the change is followed at all.
void CalleeUpdate::FindWhatLeadsToRecursion() {
  std::vector<bool> leads(table_.Count(), false);
  for (size_t position = 0; position < table_.order_.size(); ++position) {
    const StkFunction& function = *table_.Functions()[table_.order_.At(position)];
    bool leadsThere = function.Is(FN_RECURSIVE);
    for (const StkFunction* callee : AllCallees(function)) {
      leadsThere = leadsThere || leads[table_.IndexOf(*callee)];
    }
    leads[function.index] = leadsThere;
  }
  table_.leadsToRecursion_ = std::move(leads);
}

bool CalleeUpdate::Follow(const CalleeChange& change) {
  StkFunction& caller = *change.caller;
  const StkFunctionList& now = caller.extraCallees;
  const StkFunctionList added = Missing(now, change.before);
  const StkFunctionList taken = Missing(change.before, now);
  // A walk that comes to the same callees in another order may enter a recursion elsewhere.
  const bool isRearranged = Without(now, added, taken) != Without(change.before, added, taken);
  if (!LeadNowhere(added) || !LeadNowhere(taken) || (isRearranged && !LeadNowhere(now))) {
    return false;
  }
  for (StkFunction* callee : added) {
    if (!PutBefore(*callee, caller)) {
      return false;
    }
  }
  for (StkFunction* callee : added) {
    AddCall(*callee, caller);
  }
  for (StkFunction* callee : taken) {
    TakeCall(*callee, caller);
  }
  table_.order_.NoteOtherCalls();
  table_.boundComponents_.reset();
  table_.Touch(caller);
  return true;
}

bool CalleeUpdate::LeadNowhere(const StkFunctionList& callees) const {
  return std::ranges::none_of(callees, [this](const StkFunction* callee) {
    return table_.leadsToRecursion_[callee->index];
  });
}

bool CalleeUpdate::PutBefore(const StkFunction& callee, const StkFunction& caller) {
  ComputationOrder& order = table_.order_;
  if (order.PositionOf(callee.index) < order.PositionOf(caller.index)) {
    return true;
  }
  const std::optional<std::vector<bool>> moved =
      CallsBetween(table_, order.Positions(), AllCallees).Find(callee.index, caller.index);
  if (!moved) {
    return false;
  }
  order.MoveBefore(caller.index, callee.index, *moved);
  return true;
}

void CalleeUpdate::AddCall(StkFunction& callee, const StkFunction& caller) {
  table_.extraCallers_.Add(callee.index, caller.index);
  table_.changes_.addedCalls.push_back({caller.index, callee.index});
  if (callee.Is(FN_ROOT) && !callee.Is(FN_ENTRY)) {
    callee.flags &= ~uint32_t{FN_ROOT};
    roots_.functions_.erase(std::ranges::lower_bound(roots_.functions_, &callee, ByIndex));
    CountOverLimit(callee, uint32_t{0} - 1);
  }
}

void CalleeUpdate::TakeCall(StkFunction& callee, const StkFunction& caller) {
  table_.extraCallers_.Remove(callee.index, caller.index);
  const bool isCalled =
      !table_.extraCallers_.Of(callee.index).empty() || !table_.Callers(callee.index).empty();
  if (!isCalled && !callee.Is(FN_ROOT)) {
    callee.flags |= FN_ROOT;
    roots_.functions_.insert(std::ranges::lower_bound(roots_.functions_, &callee, ByIndex),
                             &callee);
    CountOverLimit(callee, 1);
  }
}

void CalleeUpdate::CountOverLimit(const StkFunction& function, uint32_t change) {
  table_.overLimitRoots_ += function.totalStackSize == kOverSize ? change : 0u;
}

}  // namespace velkor
