#include "core/detail/cause_graph.h"

#include <algorithm>
#include <utility>

#include "core/bound_arithmetic.h"
#include "core/call_range.h"
#include "core/detail/cycle_cut.h"

namespace velkor {

CauseGraph::CauseGraph(const StkFunctionTable& table, const StkBounds& bounds,
                       std::optional<uint32_t> onlyEntry)
    : table_(table), bounds_(bounds), onlyEntry_(onlyEntry), nodeOf_(table.Count(), kNone) {
  const std::vector<bool> isReached = ReachedFromEntry();
  const std::span<const uint32_t> order = bounds.CalleesFirst();
  for (size_t first = 0; first < order.size();) {
    const StkFunction& function = *table.Functions()[order[first]];
    const uint32_t group = bounds.GroupOf(function);
    const bool alone = group == StkBounds::kNoGroup;
    const std::span<const uint32_t> members =
        alone ? order.subspan(first, 1) : std::span(bounds.Groups()[group].members);
    first += members.size();
    if (isReached[function.index] && !bounds.Reasons(function).empty()) {
      AddNode(members);
    }
  }
}

std::vector<bool> CauseGraph::ReachedFromEntry() const {
  std::vector<bool> isReached(table_.Count(), !onlyEntry_);
  std::vector<uint32_t> open;
  const auto reach = [&](uint32_t function) {
    if (!isReached[function]) {
      isReached[function] = true;
      open.push_back(function);
    }
  };
  if (onlyEntry_) {
    reach(*onlyEntry_);
  }
  while (!open.empty()) {
    const StkFunction& function = *table_.Functions()[open.back()];
    open.pop_back();
    for (const StkFunction* callee : BoundCallees(function)) {
      reach(table_.IndexOf(*callee));
    }
  }
  return isReached;
}

bool CauseGraph::IsEntry(uint32_t function) const {
  return onlyEntry_ ? function == *onlyEntry_ : table_.Functions()[function]->Is(FN_ROOT);
}

void CauseGraph::AddNode(std::span<const uint32_t> members) {
  const uint32_t node = NodeCount();
  uint32_t entries = 0;
  for (const uint32_t member : members) {
    nodeOf_[member] = node;
    entries += IsEntry(member) ? 1U : 0U;
  }
  entries_.push_back(entries);
  AddCallees(members);
  AddCauses(members);
}

void CauseGraph::AddCallees(std::span<const uint32_t> members) {
  const uint32_t node = nodeOf_[members.front()];
  metBy_.push_back(node);
  for (const uint32_t member : members) {
    for (const StkFunction* callee : BoundCallees(*table_.Functions()[member])) {
      const uint32_t called = nodeOf_[table_.IndexOf(*callee)];
      if (called != kNone && std::exchange(metBy_[called], node) != node) {
        callees_.push_back(called);
      }
    }
  }
  firstCallee_.push_back(CallCount());
}

void CauseGraph::AddCauses(std::span<const uint32_t> members) {
  const uint32_t group = bounds_.GroupOf(*table_.Functions()[members.front()]);
  std::vector<uint32_t> limiting;
  if (group != StkBounds::kNoGroup && !bounds_.Groups()[group].settled) {
    limiting = LimitingMembers(bounds_.Groups()[group]);
    PlannedStep step;
    for (const uint32_t member : limiting) {
      ReasonSet settles = MissingOf(*table_.Functions()[member]);
      settles.Add(ReasonKind::kRecursion);
      step.statements.push_back({member, settles});
    }
    AddCause(std::move(step));
  }
  for (const uint32_t member : members) {
    const ReasonSet missing = MissingOf(*table_.Functions()[member]);
    if (!missing.empty() && !std::ranges::binary_search(limiting, member)) {
      AddCause({.statements = {{member, missing}}});
    }
  }
  firstCause_.push_back(static_cast<uint32_t>(causes_.size()));
}

void CauseGraph::AddCause(PlannedStep step) {
  causes_.push_back(CauseCount());
  steps_.push_back(std::move(step));
}

std::vector<uint32_t> CauseGraph::LimitingMembers(const RecursionGroup& group) const {
  const GroupPlaces& places = bounds_.Places();
  const uint32_t number = places.group[group.members.front()];
  CallGraph calls;
  std::vector<bool> entered;
  std::vector<uint32_t> callees;
  for (const uint32_t member : group.members) {
    const StkFunction& function = *table_.Functions()[member];
    callees.clear();
    for (const StkFunction* callee : BoundCallees(function)) {
      const uint32_t index = table_.IndexOf(*callee);
      // Those that state a depth limit what passes them already.
      if (places.group[index] == number && StatedDepth(*callee) == kNoDepth) {
        callees.push_back(places.place[index]);
      }
    }
    calls.Append(callees);
    entered.push_back(IsEnteredFromOutside(function, number));
  }
  std::vector<uint32_t> limiting = FindCycleCut(calls, entered);
  std::ranges::transform(limiting, limiting.begin(),
                         [&group](uint32_t place) { return group.members[place]; });
  return limiting;
}

bool CauseGraph::IsEnteredFromOutside(const StkFunction& member, uint32_t group) const {
  const auto isOutside = [&](uint32_t caller) {
    return bounds_.GroupOf(*table_.Functions()[caller]) != group;
  };
  return member.Is(FN_ROOT) || std::ranges::any_of(table_.Callers(member.index), isOutside) ||
         std::ranges::any_of(table_.ExtraCallers(member.index), isOutside);
}

}  // namespace velkor
