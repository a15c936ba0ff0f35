#include "reports/gate/bound_causes.h"

#include <algorithm>
#include <fmt/format.h>

#include "reports/gate/gate_input.h"

namespace velkor::reports {
namespace {

constexpr size_t kMostMembers = 5;

std::string MembersOf(const AnalysisResult& result, uint32_t group) {
  const std::vector<uint32_t>& members = result.groups[group].members;
  std::string text;
  for (size_t i = 0; i < members.size() && i < kMostMembers; ++i) {
    text += (i == 0 ? "" : ", ") + result.ShownSpecName(members[i]);
  }
  return members.size() > kMostMembers
             ? text + fmt::format(" and {} more", members.size() - kMostMembers)
             : text;
}

}  // namespace

void BoundCauses::AddStack(uint32_t stack, const std::vector<uint32_t>& functions) {
  for (const uint32_t function : functions) {
    Meet(function, stack);
  }
  while (!waiting_.empty()) {
    const uint32_t function = waiting_.back();
    waiting_.pop_back();
    const ReasonSet own = result_.functions[function].ownReasons;
    for (const ReasonKind kind : kReasonKinds) {
      if (own.Has(kind)) {
        AddCause(kind, function, stack);
      }
    }
    for (const uint32_t callee : result_.AllCallees(function)) {
      Meet(callee, stack);
    }
  }
}

void BoundCauses::Meet(uint32_t function, uint32_t stack) {
  if (met_[function] != stack && result_.functions[function].state == BoundState::kUnbounded) {
    met_[function] = stack;
    waiting_.push_back(function);
  }
}

void BoundCauses::AddCause(ReasonKind kind, uint32_t function, uint32_t stack) {
  if (kind == ReasonKind::kRecursion) {
    function = NamedMemberOf(result_.explanations.GroupOf(function));
  }
  const uint64_t key = uint64_t{function} << 8 | static_cast<uint8_t>(kind);
  const auto [place, isNew] = places_.try_emplace(key, causes_.size());
  if (isNew) {
    causes_.push_back({.kind = kind,
                       .function = function,
                       .name = std::string(ReasonName(kind)) + " " + StableName(result_, function),
                       .stacks = {stack}});
    return;
  }
  std::vector<uint32_t>& stacks = causes_[place->second].stacks;
  if (stacks.back() != stack) {
    stacks.push_back(stack);
  }
}

// The same whatever the order of the functions.
uint32_t BoundCauses::NamedMemberOf(uint32_t group) {
  const auto [named, isNew] = namedMembers_.try_emplace(group);
  if (isNew) {
    named->second =
        *std::ranges::min_element(result_.groups[group].members, {},
                                  [this](uint32_t member) { return StableName(result_, member); });
  }
  return named->second;
}

// Clones of one function are one cause.
std::vector<BoundCause> BoundCauses::Take() {
  std::ranges::stable_sort(causes_, {}, &BoundCause::name);
  std::vector<BoundCause> merged;
  for (BoundCause& cause : causes_) {
    if (merged.empty() || merged.back().name != cause.name) {
      merged.push_back(std::move(cause));
      continue;
    }
    std::vector<uint32_t>& stacks = merged.back().stacks;
    stacks.insert(stacks.end(), cause.stacks.begin(), cause.stacks.end());
    std::ranges::sort(stacks);
    stacks.erase(std::unique(stacks.begin(), stacks.end()), stacks.end());
  }
  return merged;
}

std::string TextOf(const BoundCause& cause, const AnalysisResult& result) {
  const std::string name = result.ShownSpecName(cause.function);
  switch (cause.kind) {
    case ReasonKind::kUnknown:
      return fmt::format("the size of {} is not known", name);
    case ReasonKind::kIndirect:
      return fmt::format("{} calls through a pointer", name);
    case ReasonKind::kHiddenCall:
      return fmt::format("{} makes a call that its record does not list", name);
    case ReasonKind::kDynamic:
      return fmt::format("the frame of {} grows while it runs", name);
    case ReasonKind::kRecursion:
      break;
  }
  return "the recursion of " + MembersOf(result, result.explanations.GroupOf(cause.function)) +
         " has no limit";
}

std::string HelpFor(const BoundCause& cause, const AnalysisResult& result) {
  const std::string name(
      result.Statement(cause.function).value_or(result.SpecName(cause.function)));
  constexpr std::string_view kIn = "in a file of \"load\"";
  switch (cause.kind) {
    case ReasonKind::kUnknown:
    case ReasonKind::kDynamic:
      return fmt::format("state \"{}, ADD=bytes\" {}", name, kIn);
    case ReasonKind::kIndirect:
    case ReasonKind::kHiddenCall:
      return fmt::format("state \"{}, CALL=one, CALL=two\" {}, with all that it may call", name,
                         kIn);
    case ReasonKind::kRecursion:
      break;
  }
  return fmt::format(
      "state \"{}, RECTIME=times\" {}: how often it can be active at once, its first call counted; "
      "likewise of others until every way round passes one",
      name, kIn);
}

}  // namespace velkor::reports
