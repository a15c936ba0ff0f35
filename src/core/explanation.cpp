#include "core/explanation.h"

#include <algorithm>
#include <utility>

#include "core/bound_arithmetic.h"
#include "core/call_range.h"

namespace velkor {

namespace {

// The first of those offered whose known bytes are the most.
class Heaviest {
 public:
  void Offer(uint32_t function, uint64_t known) {
    if (!any_ || known > known_) {
      any_ = true;
      function_ = function;
      known_ = known;
    }
  }
  uint32_t OrElse(uint32_t none) const { return any_ ? function_ : none; }

 private:
  bool any_ = false;
  uint32_t function_ = 0;
  uint64_t known_ = 0;
};

}  // namespace

// The rows so far. What is added beyond kMaxBound is not counted, as in the number that they
// explain.
class Explanations::Rows {
 public:
  explicit Rows(size_t mostCalls) : callsLeft(mostCalls) {}

  void Add(uint32_t function, uint64_t bytes, uint32_t group) {
    Add({.function = function, .bytes = bytes, .times = 1, .group = group, .calls = {}});
  }
  void Add(ExplanationRow row) {
    row.bytes = std::min(row.bytes, kMaxBound - sum_);
    sum_ += row.bytes;
    rows_.push_back(std::move(row));
  }
  std::vector<ExplanationRow> Take() { return std::move(rows_); }

  size_t callsLeft;

 private:
  std::vector<ExplanationRow> rows_;
  uint64_t sum_ = 0;
};

Explanations::Explanations(const StkFunctionTable& table, const StkBounds& bounds)
    : group_(bounds.Places().group), next_(table.Count(), kNone) {
  own_.reserve(table.Count());
  for (const StkFunction* function : table.Functions()) {
    own_.push_back(ActivationSize(table, *function));
    if (group_[function->index] == StkBounds::kNoGroup) {
      Heaviest heaviest;
      for (const StkFunction* callee : BoundCallees(*function)) {
        const uint32_t index = table.IndexOf(*callee);
        heaviest.Offer(index, bounds.KnownAt(index));
      }
      next_[function->index] = heaviest.OrElse(kNone);
    }
  }
  for (uint32_t number = 0; number < bounds.Groups().size(); ++number) {
    AddGroup(table, bounds, number);
  }
}

void Explanations::AddGroup(const StkFunctionTable& table, const StkBounds& bounds,
                            uint32_t number) {
  const std::vector<uint32_t>& members = bounds.Groups()[number].members;
  const GroupPaths paths = FindGroupPaths(table, members, bounds.Places());
  Group group{.activations = paths.activations, .counted = {}};
  Heaviest ownHeaviest;
  Heaviest below;
  for (uint32_t place = 0; place < members.size(); ++place) {
    ownHeaviest.Offer(members[place], paths.own[place]);
    for (const StkFunction* callee : BoundCallees(*table.Functions()[members[place]])) {
      const uint32_t index = table.IndexOf(*callee);
      if (group_[index] != number) {
        below.Offer(index, bounds.KnownAt(index));
      }
    }
    if (paths.settled) {
      const uint32_t next = paths.next[place];
      next_[members[place]] = next == GroupPaths::kEnd ? kNone : members[next];
      if (paths.isCounted[place]) {
        group.counted.push_back({members[place], paths.heaviest[place]});
      }
    }
  }
  group.heaviest = ownHeaviest.OrElse(members.front());
  group.below = below.OrElse(kNone);
  groups_.push_back(std::move(group));
}

std::vector<ExplanationRow> Explanations::Of(uint32_t start, size_t mostCalls) const {
  Rows rows(mostCalls);
  for (uint32_t function = start; function != kNone;) {
    if (group_[function] != StkBounds::kNoGroup) {
      function = AppendGroup(function, rows);
    } else {
      rows.Add(function, own_[function], StkBounds::kNoGroup);
      function = next_[function];
    }
  }
  return rows.Take();
}

uint32_t Explanations::AppendGroup(uint32_t function, Rows& rows) const {
  const uint32_t number = group_[function];
  const Group& group = groups_[number];
  if (group.counted.empty()) {
    rows.Add(group.heaviest, own_[group.heaviest], number);
    return group.below;
  }
  const bool enteredAtCounted =
      std::ranges::binary_search(group.counted, function, {}, &Counted::function);
  for (uint32_t at = enteredAtCounted ? kNone : function; at != kNone; at = next_[at]) {
    rows.Add(at, own_[at], number);
  }
  for (const Counted& counted : group.counted) {
    const uint64_t round = AddBounded(own_[counted.function], counted.below);
    ExplanationRow row{.function = counted.function,
                       .bytes = MultiplyBounded(group.activations, round),
                       .times = group.activations,
                       .group = number,
                       .calls = {}};
    rows.callsLeft = FollowPath(next_[counted.function], rows.callsLeft, row);
    rows.Add(std::move(row));
  }
  return group.below;
}

size_t Explanations::FollowPath(uint32_t function, size_t mostCalls, ExplanationRow& row) const {
  for (; function != kNone; function = next_[function]) {
    if (row.calls.size() == mostCalls) {
      row.calls.clear();
      row.callsLeftOut = true;
      return 0;
    }
    row.calls.push_back({function, own_[function]});
  }
  return mostCalls - row.calls.size();
}

}  // namespace velkor
