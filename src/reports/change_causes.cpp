#include "reports/change_causes.h"

#include <algorithm>

namespace velkor::reports {
namespace {

constexpr uint32_t kNobody = 0xFFFFFFFF;
constexpr uint64_t kMostEffort = 50'000'000;

}  // namespace

ChangeCauses::ChangeCauses(const ComparedAnalysis& worse, const ComparedAnalysis& better,
                           std::span<const uint32_t> matched)
    : worse_(worse), better_(better), matched_(matched) {}

ChangeCause ChangeCauses::Of(uint32_t entry) {
  if (const std::optional<ChangeCause> reason = NewReason(entry)) {
    return *reason;
  }
  const std::vector<Step> path = HeaviestPath(entry);
  for (const auto find :
       {&ChangeCauses::GrownSize, &ChangeCauses::NewCall, &ChangeCauses::OtherRounds}) {
    if (const std::optional<ChangeCause> cause = (this->*find)(path)) {
      return *cause;
    }
  }
  ChangeCause cause;
  cause.kind = ChangeCause::Kind::kPath;
  cause.function = entry;
  for (const Step& step : path) {
    cause.path.push_back(step.function);
  }
  return cause;
}

// A kind that the better one did not miss.
std::optional<ChangeCause> ChangeCauses::NewReason(uint32_t entry) {
  const std::span<const ReasonWitness> before = better_.Reasons(matched_[entry]);
  for (const ReasonWitness& reason : worse_.Reasons(entry)) {
    if (std::ranges::find(before, reason.kind, &ReasonWitness::kind) == before.end()) {
      ChangeCause cause;
      cause.kind = ChangeCause::Kind::kReason;
      cause.reason = reason.kind;
      cause.function = reason.function;
      cause.path = PathTo(entry, reason.function);
      return cause;
    }
  }
  return std::nullopt;
}

// Each step leads out of a group or a function for good; in a file that somebody has changed by
// hand it may not.
std::vector<ChangeCauses::Step> ChangeCauses::HeaviestPath(uint32_t entry) {
  std::vector<Step> path;
  uint32_t next = entry;
  while (next != kNobody && path.size() <= worse_.functions.size() && effort_ < kMostEffort) {
    path.push_back({next, worse_.functions[next].group});
    next = HeaviestCallee(path.back());
  }
  return path;
}

std::span<const uint32_t> ChangeCauses::FunctionsOf(const Step& step) const {
  return step.group == StkBounds::kNoGroup ? std::span(&step.function, 1)
                                           : std::span(worse_.groups[step.group]);
}

// The first of the heaviest ones that are called outside the group.
uint32_t ChangeCauses::HeaviestCallee(const Step& step) {
  uint32_t heaviest = kNobody;
  for (const uint32_t function : FunctionsOf(step)) {
    effort_ += 1 + worse_.Callees(function).size();
    for (const uint32_t callee : worse_.Callees(function)) {
      const bool outside =
          step.group == StkBounds::kNoGroup || worse_.functions[callee].group != step.group;
      if (outside && (heaviest == kNobody ||
                      worse_.functions[callee].known > worse_.functions[heaviest].known)) {
        heaviest = callee;
      }
    }
  }
  return heaviest;
}

std::optional<ChangeCause> ChangeCauses::GrownSize(const std::vector<Step>& path) const {
  uint64_t most = 0;
  std::optional<ChangeCause> cause;
  for (size_t i = 0; i < path.size(); ++i) {
    for (const uint32_t function : FunctionsOf(path[i])) {
      if (Growth(function) > most) {
        most = Growth(function);
        cause = At(ChangeCause::Kind::kSize, path, i, function);
        cause->sizeBefore = better_.functions[matched_[function]].own;
        cause->sizeAfter = worse_.functions[function].own;
      }
    }
  }
  return cause;
}

uint64_t ChangeCauses::Growth(uint32_t function) const {
  if (matched_[function] == FunctionMatching::kNone) {
    return 0;
  }
  const uint64_t before = better_.functions[matched_[function]].own;
  const uint64_t now = worse_.functions[function].own;
  return now > before ? now - before : 0;
}

std::optional<ChangeCause> ChangeCauses::NewCall(const std::vector<Step>& path) const {
  for (size_t i = 1; i < path.size(); ++i) {
    if (!WasCalled(path[i - 1], path[i].function)) {
      ChangeCause cause = At(ChangeCause::Kind::kCall, path, i, path[i].function);
      cause.sizeAfter = worse_.functions[path[i].function].known;
      return cause;
    }
  }
  return std::nullopt;
}

bool ChangeCauses::WasCalled(const Step& caller, uint32_t callee) const {
  return std::ranges::any_of(FunctionsOf(caller), [&](uint32_t function) {
    if (matched_[function] == FunctionMatching::kNone ||
        matched_[callee] == FunctionMatching::kNone) {
      return false;
    }
    const std::span<const uint32_t> before = better_.Callees(matched_[function]);
    return std::ranges::find(before, matched_[callee]) != before.end();
  });
}

std::optional<ChangeCause> ChangeCauses::OtherRounds(const std::vector<Step>& path) const {
  for (size_t i = 0; i < path.size(); ++i) {
    if (path[i].group == StkBounds::kNoGroup) {
      continue;
    }
    for (const uint32_t function : FunctionsOf(path[i])) {
      const uint32_t same = matched_[function];
      if (same != FunctionMatching::kNone &&
          better_.functions[same].depth != worse_.functions[function].depth) {
        ChangeCause cause = At(ChangeCause::Kind::kRounds, path, i, function);
        cause.sizeBefore = better_.functions[same].depth;
        cause.sizeAfter = worse_.functions[function].depth;
        return cause;
      }
    }
  }
  return std::nullopt;
}

ChangeCause ChangeCauses::At(ChangeCause::Kind kind, const std::vector<Step>& path, size_t step,
                             uint32_t function) const {
  ChangeCause cause;
  cause.kind = kind;
  cause.function = function;
  for (size_t i = 0; i <= step; ++i) {
    cause.path.push_back(path[i].function);
  }
  if (cause.path.back() != function) {
    cause.path.push_back(function);  // of the group that is entered elsewhere
  }
  return cause;
}

// A shortest one; empty where all of them together have taken too long.
std::vector<uint32_t> ChangeCauses::PathTo(uint32_t entry, uint32_t function) {
  if (effort_ > kMostEffort) {
    return {};
  }
  callerOf_.assign(worse_.functions.size(), kNobody);
  callerOf_[entry] = entry;
  std::vector<uint32_t> queue{entry};
  for (size_t i = 0; i < queue.size() && callerOf_[function] == kNobody; ++i) {
    for (const uint32_t callee : worse_.Callees(queue[i])) {
      ++effort_;
      if (callerOf_[callee] == kNobody) {
        callerOf_[callee] = queue[i];
        queue.push_back(callee);
      }
    }
  }
  effort_ += callerOf_.size();
  if (callerOf_[function] == kNobody) {
    return {};
  }
  std::vector<uint32_t> path{function};
  while (path.back() != entry) {
    path.push_back(callerOf_[path.back()]);
  }
  std::ranges::reverse(path);
  return path;
}

}  // namespace velkor::reports
