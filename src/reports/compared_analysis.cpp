#include "reports/compared_analysis.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace velkor::reports {
namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// The members of firstOf from there up to the next function's.
template <typename Item>
std::span<const Item> Part(const std::vector<Item>& items,
                           const std::vector<ComparedFunction>& functions, uint32_t function,
                           uint32_t ComparedFunction::*first) {
  const size_t next = function + size_t{1};
  const size_t end = next < functions.size() ? functions[next].*first : items.size();
  return std::span(items).subspan(functions[function].*first, end - functions[function].*first);
}

}  // namespace

std::span<const uint32_t> ComparedAnalysis::Callees(uint32_t function) const {
  return Part(calls, functions, function, &ComparedFunction::firstCall);
}

std::span<const ReasonWitness> ComparedAnalysis::Reasons(uint32_t function) const {
  return Part(reasons, functions, function, &ComparedFunction::firstReason);
}

std::string WithoutCloneNumbers(std::string_view name) {
  constexpr std::array<std::string_view, 4> kClones = {".part.", ".isra.", ".constprop.",
                                                       ".lto_priv."};
  std::string kept;
  for (size_t i = 0; i < name.size();) {
    const auto clone = std::ranges::find_if(
        kClones, [&](std::string_view each) { return name.substr(i).starts_with(each); });
    if (clone == kClones.end() || i + clone->size() == name.size() ||
        !IsDigit(name[i + clone->size()])) {
      kept += name[i++];
      continue;
    }
    kept += clone->substr(0, clone->size() - 1);
    i += clone->size();
    while (i < name.size() && IsDigit(name[i])) {
      ++i;
    }
  }
  return kept;
}

ComparedAnalysis TakeCompared(const AnalysisResult& result) {
  ComparedAnalysis taken;
  taken.label = result.project;
  taken.files = result.files;
  taken.calls = result.calls;
  taken.functions.reserve(result.functions.size());
  for (uint32_t function = 0; function < result.functions.size(); ++function) {
    const AnalysedFunction& from = result.functions[function];
    taken.functions.push_back({.own = result.explanations.ActivationSizeOf(function),
                               .known = from.known,
                               .file = from.file,
                               .line = from.line,
                               .group = result.explanations.GroupOf(function),
                               .firstCall = from.firstCall,
                               .firstReason = static_cast<uint32_t>(taken.reasons.size()),
                               .depth = result.Adjustment(function).depth,
                               .state = from.state,
                               .isTopLevel = from.Is(FN_ROOT)});
    std::ranges::copy(result.Reasons(function), std::back_inserter(taken.reasons));
    taken.keys.Add(
        WithoutCloneNumbers(result.Statement(function).value_or(result.SpecName(function))));
    taken.symbols.Add(result.Name(function));
    taken.names.Add(result.SpecName(function));
  }
  for (const RecursionGroup& group : result.groups) {
    taken.groups.push_back(group.members);
    taken.activations.push_back(group.activations);
  }
  return taken;
}

}  // namespace velkor::reports
