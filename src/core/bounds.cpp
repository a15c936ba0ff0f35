#include "core/bounds.h"

#include <algorithm>
#include <bit>
#include <memory>
#include <utility>

#include "core/call_range.h"
#include "core/detail/call_graph.h"
#include "core/detail/calls_between.h"
#include "core/detail/components.h"

namespace velkor {

namespace {

// Marks of components that are taken from the smallest number up, while larger ones are marked.
class Waiting {
 public:
  explicit Waiting(size_t count) : words_(count / kBits + 1, 0) {}

  void Mark(uint32_t component) { words_[component / kBits] |= uint64_t{1} << component % kBits; }

  template <typename Visit>
  void TakeEach(Visit visit) {
    for (size_t word = 0; word < words_.size(); ++word) {
      while (words_[word] != 0) {
        const auto bit = static_cast<uint32_t>(std::countr_zero(words_[word]));
        words_[word] &= words_[word] - 1;
        visit(static_cast<uint32_t>(word * kBits + bit));
      }
    }
  }

 private:
  static constexpr uint32_t kBits = 64;
  std::vector<uint64_t> words_;
};

// What every path through the group takes: all activations of the counted members with what runs
// between them; without a limit the heaviest member.
uint64_t SharedOf(const GroupPaths& paths) {
  if (!paths.settled) {
    return *std::ranges::max_element(paths.own);
  }
  uint64_t shared = 0;
  for (uint32_t place = 0; place < paths.own.size(); ++place) {
    if (paths.isCounted[place]) {
      const uint64_t round = AddBounded(paths.own[place], paths.heaviest[place]);
      shared = AddBounded(shared, MultiplyBounded(paths.activations, round));
    }
  }
  return shared;
}

}  // namespace

std::string_view BoundStateName(BoundState state) {
  constexpr std::string_view kNames[] = {"bounded", "unbounded", "over"};
  return kNames[static_cast<size_t>(state)];
}

void StkBounds::Update() {
  const StkFunctionTable::Changes changes = table_.TakeChanges();
  try {
    const bool isKept = !changes.structure && component_.size() == table_.Count() &&
                        std::ranges::all_of(changes.addedCalls, [this](const auto& call) {
                          return PutBelow(call.callee, call.caller);
                        });
    if (!isKept) {
      FindStructure();
      ComputeAll();
    } else if (!changes.functions.empty()) {
      ComputeChanged(changes.functions);
    }
  } catch (...) {
    table_.NoteStructureChange();  // what is half computed must not pass for results
    throw;
  }
}

BoundState StkBounds::State(const StkFunction& function) const {
  if (!Reasons(function).empty()) {
    return BoundState::kUnbounded;
  }
  return Known(function) > table_.SizeLimit() ? BoundState::kOver : BoundState::kBounded;
}

ReasonSet StkBounds::OwnReasons(const StkFunction& function) const {
  ReasonSet reasons = MissingOf(function);
  const uint32_t group = GroupOf(function);
  if (group != kNoGroup && !groups_[group].settled) {
    reasons.Add(ReasonKind::kRecursion);
  }
  return reasons;
}

bool StkBounds::IsComplete(const StkFunction& function) const {
  return State(function) == BoundState::kBounded && function.totalStackSize >= Known(function);
}

void StkBounds::FindStructure() {
  const std::unique_ptr<Components> found = std::move(table_.boundComponents_);
  Components components = found && found->of.size() == table_.Count()
                              ? std::move(*found)
                              : FindComponents(CallGraph::OfBounds(table_));
  component_ = std::move(components.of);
  members_ = std::move(components.members);
  firstMember_ = std::move(components.firstMember);
  CollectGroups(components.recursive);
}

void StkBounds::CollectGroups(const std::vector<bool>& recursive) {
  groups_.clear();
  places_.group.assign(table_.Count(), kNoGroup);
  places_.place.assign(table_.Count(), 0);
  for (uint32_t function = 0; function < table_.Count(); ++function) {
    const uint32_t component = component_[function];
    if (!recursive[component]) {
      continue;
    }
    // The first one met is the smallest, and takes the others along.
    uint32_t& group = places_.group[function];
    if (group == kNoGroup) {
      const auto number = static_cast<uint32_t>(groups_.size());
      groups_.emplace_back();
      for (const uint32_t member : Members(component)) {
        places_.group[member] = number;
      }
    }
    std::vector<uint32_t>& members = groups_[group].members;
    places_.place[function] = static_cast<uint32_t>(members.size());
    members.push_back(function);
  }
}

void StkBounds::ComputeAll() {
  results_.known.assign(table_.Count(), 0);
  results_.reasons.assign(table_.Count(), ReasonSet());
  for (uint32_t component = 0; component + 1 < firstMember_.size(); ++component) {
    Compute(component);
  }
}

void StkBounds::ComputeChanged(const StkFunctionList& functions) {
  Waiting waiting(firstMember_.size());
  for (const StkFunction* function : functions) {
    waiting.Mark(component_[function->index]);
  }
  waiting.TakeEach([&](uint32_t component) {
    if (!Compute(component)) {
      return;
    }
    for (const uint32_t member : Members(component)) {
      for (const auto callers : {table_.Callers(member), table_.ExtraCallers(member)}) {
        for (const uint32_t caller : callers) {
          if (component_[caller] != component) {
            waiting.Mark(component_[caller]);
          }
        }
      }
    }
  });
}

bool StkBounds::PutBelow(uint32_t callee, uint32_t caller) {
  const uint32_t first = component_[caller];
  const uint32_t last = component_[callee];
  if (last < first || table_.Functions()[caller]->Is(FN_TOTAL_STATED)) {
    return true;
  }
  const auto moved = CallsBetween(table_, component_, BoundCallees).Find(callee, caller);
  if (!moved) {
    return false;
  }
  const uint32_t start = firstMember_[first];
  const uint32_t end = firstMember_[last + 1];
  std::stable_partition(members_.begin() + start, members_.begin() + end,
                        [&moved](uint32_t function) { return (*moved)[function]; });
  uint32_t number = first;
  uint32_t before = component_[members_[start]];
  for (uint32_t i = start; i < end; ++i) {
    uint32_t& component = component_[members_[i]];
    if (component != before) {
      firstMember_[++number] = i;
    }
    before = std::exchange(component, number);
  }
  return true;
}

std::span<const uint32_t> StkBounds::Members(uint32_t component) const {
  return std::span(members_).subspan(firstMember_[component],
                                     firstMember_[component + 1] - firstMember_[component]);
}

// Whether anything has changed for the callers.
bool StkBounds::Compute(uint32_t component) {
  const uint32_t first = members_[firstMember_[component]];
  const uint32_t group = places_.group[first];
  return group == kNoGroup ? ComputeAlone(first) : ComputeGroup(groups_[group]);
}

bool StkBounds::ComputeAlone(uint32_t function) {
  const StkFunction& record = *table_.Functions()[function];
  ReasonSet reasons = MissingOf(record);
  uint64_t below = 0;
  for (const StkFunction* callee : BoundCallees(record)) {
    const uint32_t index = table_.IndexOf(*callee);
    below = std::max(below, results_.known[index]);
    reasons.Add(results_.reasons[index]);
  }
  return Set(function, AddBounded(ActivationSize(table_, record), below), reasons);
}

bool StkBounds::ComputeGroup(RecursionGroup& group) {
  const GroupPaths paths = FindGroupPaths(table_, group.members, places_);
  Below below = BelowGroup(group);
  if (!paths.settled) {
    below.reasons.Add(ReasonKind::kRecursion);
  }
  group.settled = paths.settled;
  group.activations = paths.activations;
  group.counted.clear();
  const uint64_t shared = SharedOf(paths);
  bool changed = false;
  for (uint32_t place = 0; place < group.members.size(); ++place) {
    uint64_t known = AddBounded(shared, below.known);
    if (paths.settled && paths.isCounted[place]) {
      group.counted.push_back(group.members[place]);
    } else if (paths.settled) {
      known = AddBounded(known, paths.heaviest[place]);
    }
    changed = Set(group.members[place], known, below.reasons) || changed;
  }
  return changed;
}

// What the members miss, and what they bring in from outside the group.
StkBounds::Below StkBounds::BelowGroup(const RecursionGroup& group) const {
  const uint32_t number = places_.group[group.members.front()];
  Below below;
  for (const uint32_t index : group.members) {
    const StkFunction& member = *table_.Functions()[index];
    below.reasons.Add(MissingOf(member));
    for (const StkFunction* callee : BoundCallees(member)) {
      const uint32_t outside = table_.IndexOf(*callee);
      if (places_.group[outside] != number) {
        below.known = std::max(below.known, results_.known[outside]);
        below.reasons.Add(results_.reasons[outside]);
      }
    }
  }
  return below;
}

bool StkBounds::Set(uint32_t function, uint64_t known, ReasonSet reasons) {
  if (results_.known[function] == known && results_.reasons[function] == reasons) {
    return false;
  }
  results_.known[function] = known;
  results_.reasons[function] = reasons;
  return true;
}

}  // namespace velkor
