#include "reports/entry_ranking.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <string_view>
#include <utility>

namespace velkor::reports {
namespace {

bool IsUnbounded(const AnalysisResult& result, uint32_t function) {
  return result.functions[function].state == BoundState::kUnbounded;
}

// Equal numbers of functions without a bound first: they can be larger.
bool IsBefore(const AnalysisResult& result, uint32_t left, uint32_t right) {
  const auto rank = [&result](uint32_t function) {
    return std::pair(result.functions[function].known, IsUnbounded(result, function));
  };
  return rank(left) > rank(right);
}

}  // namespace

std::vector<uint32_t> LargestFirst(const AnalysisResult& result) {
  std::vector<uint32_t> roots = result.roots;
  std::ranges::stable_sort(roots, std::greater(), [&result](uint32_t function) {
    return std::pair(!result.functions[function].IsReachedThroughPointers(),
                     result.functions[function].known);
  });
  return roots;
}

std::vector<EntryGroup> EntryGroups(const AnalysisResult& result) {
  std::vector<EntryGroup> groups;
  const auto add = [&](std::string_view title, bool throughPointers) {
    std::vector<uint32_t> functions;
    std::ranges::copy_if(result.roots, std::back_inserter(functions), [&](uint32_t root) {
      return result.functions[root].IsReachedThroughPointers() == throughPointers;
    });
    if (!functions.empty()) {
      groups.push_back({title, std::move(functions)});
    }
  };
  add("Largest top-level functions", false);
  add(kThroughPointers, true);
  for (EntryGroup& group : groups) {
    std::ranges::stable_sort(group.functions, [&result](uint32_t left, uint32_t right) {
      return IsBefore(result, left, right);
    });
  }
  return groups;
}

std::vector<std::span<const uint32_t>> LargestNumbers(const AnalysisResult& result,
                                                      std::span<const uint32_t> largestFirst,
                                                      size_t most) {
  std::vector<std::span<const uint32_t>> numbers;
  while (!largestFirst.empty() && numbers.size() < most) {
    const uint32_t first = largestFirst.front();
    const auto end = std::ranges::find_if(
        largestFirst, [&](uint32_t function) { return IsBefore(result, first, function); });
    const auto count = static_cast<size_t>(end - largestFirst.begin());
    numbers.push_back(largestFirst.first(count));
    largestFirst = largestFirst.subspan(count);
  }
  return numbers;
}

}  // namespace velkor::reports
