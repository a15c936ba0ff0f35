#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "reports/analysis_result.h"

namespace velkor::reports {

// The title of those that only calls through pointers lead to.
inline constexpr std::string_view kThroughPointers = "Reached through pointers only";

// The top-level functions in the order in which they are shown: those reached through pointers only
// at the end; what is known of them largest first, equal ones in table order.
std::vector<uint32_t> LargestFirst(const AnalysisResult& result);

// Top-level functions that are shown together, largest first.
struct EntryGroup {
  std::string_view title;
  std::vector<uint32_t> functions;
};
// All of them, in the order in which the groups are shown; none is empty.
std::vector<EntryGroup> EntryGroups(const AnalysisResult& result);

// The functions of such a list from its start on, each time those that share a number: of which
// the same is known, and that all have a bound or all have none. At most so many.
std::vector<std::span<const uint32_t>> LargestNumbers(const AnalysisResult& result,
                                                      std::span<const uint32_t> largestFirst,
                                                      size_t most);

}  // namespace velkor::reports
