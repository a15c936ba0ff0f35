#include "core/explanation.h"

#include <algorithm>
#include <utility>

#include "core/bound_arithmetic.h"
#include "core/call_range.h"

namespace velkor {

// The rows so far. What is added beyond kMaxBound is not counted, as in the number that they
// explain.
class Explanations::Rows {
 public:
  explicit Rows(size_t mostCalls) : callsLeft(mostCalls) {}

  void Add(const StkFunction& function, uint64_t bytes, uint32_t group) {
    Add({.function = &function, .bytes = bytes, .times = 1, .group = group, .calls = {}});
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
    : table_(table), bounds_(bounds), below_(table.Count(), kNotAsked) {}

std::vector<ExplanationRow> Explanations::Of(const StkFunction& start, size_t mostCalls) {
  Rows rows(mostCalls);
  for (uint32_t function = start.index; function != kNone;) {
    const StkFunction& record = At(function);
    if (bounds_.GroupOf(record) != StkBounds::kNoGroup) {
      function = AppendGroup(function, rows);
    } else {
      rows.Add(record, ActivationSize(record, table_.SizeLimit()), StkBounds::kNoGroup);
      function = HeaviestBelow(function);
    }
  }
  return rows.Take();
}

uint32_t Explanations::HeaviestBelow(uint32_t function) {
  uint32_t& heaviest = below_[function];
  if (heaviest == kNotAsked) {
    heaviest = kNone;
    for (const StkFunction* callee : AllCallees(At(function))) {
      if (heaviest == kNone || bounds_.Known(*callee) > bounds_.Known(At(heaviest))) {
        heaviest = table_.IndexOf(*callee);
      }
    }
  }
  return heaviest;
}

const Explanations::Group& Explanations::GroupAt(uint32_t number) {
  const auto [found, isNew] = groups_.try_emplace(number);
  Group& group = found->second;
  if (isNew) {
    const std::vector<uint32_t>& members = bounds_.Groups()[number].members;
    group.paths = FindGroupPaths(table_, members, bounds_.Places());
    group.below = kNone;
    for (const uint32_t member : members) {
      for (const StkFunction* callee : AllCallees(At(member))) {
        if (bounds_.GroupOf(*callee) != number &&
            (group.below == kNone || bounds_.Known(*callee) > bounds_.Known(At(group.below)))) {
          group.below = table_.IndexOf(*callee);
        }
      }
    }
  }
  return group;
}

uint32_t Explanations::AppendGroup(uint32_t function, Rows& rows) {
  const uint32_t number = bounds_.GroupOf(At(function));
  const std::vector<uint32_t>& members = bounds_.Groups()[number].members;
  const Group& group = GroupAt(number);
  const GroupPaths& paths = group.paths;
  if (!paths.settled) {
    const auto heaviest = std::ranges::max_element(paths.own) - paths.own.begin();
    const auto place = static_cast<uint32_t>(heaviest);
    rows.Add(At(members[place]), paths.own[place], number);
    return group.below;
  }
  const uint32_t entered = bounds_.Places().place[function];
  if (!paths.isCounted[entered]) {
    for (uint32_t place = entered; place != GroupPaths::kEnd; place = paths.next[place]) {
      rows.Add(At(members[place]), paths.own[place], number);
    }
  }
  for (uint32_t place = 0; place < members.size(); ++place) {
    if (!paths.isCounted[place]) {
      continue;
    }
    const uint64_t round = AddBounded(paths.own[place], paths.heaviest[place]);
    ExplanationRow row{.function = &At(members[place]),
                       .bytes = MultiplyBounded(paths.activations, round),
                       .times = paths.activations,
                       .group = number,
                       .calls = {}};
    rows.callsLeft = FollowPath(group, members, paths.next[place], rows.callsLeft, row);
    rows.Add(std::move(row));
  }
  return group.below;
}

size_t Explanations::FollowPath(const Group& group, const std::vector<uint32_t>& members,
                                uint32_t place, size_t mostCalls, ExplanationRow& row) const {
  const GroupPaths& paths = group.paths;
  for (; place != GroupPaths::kEnd; place = paths.next[place]) {
    if (row.calls.size() == mostCalls) {
      row.calls.clear();
      row.callsLeftOut = true;
      return 0;
    }
    row.calls.push_back({&At(members[place]), paths.own[place]});
  }
  return mostCalls - row.calls.size();
}

}  // namespace velkor
