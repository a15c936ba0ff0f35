#include "reports/gate/floating_point.h"

#include <algorithm>
#include <numeric>

#include "core/function.h"

namespace velkor::reports {

// From those that may use it to all that can reach them.
FloatingPoint::FloatingPoint(const AnalysisResult& result)
    : mayUse_(result.functions.size(), false) {
  const auto count = static_cast<uint32_t>(result.functions.size());
  std::vector<uint32_t> ends(count + size_t{1}, 0);
  for (const uint32_t callee : result.calls) {
    ++ends[callee + size_t{1}];
  }
  std::partial_sum(ends.begin(), ends.end(), ends.begin());
  std::vector<uint32_t> callers(result.calls.size());
  std::vector<uint32_t> waiting;
  for (uint32_t function = 0; function < count; ++function) {
    for (const uint32_t callee : result.AllCallees(function)) {
      callers[ends[callee]++] = function;
    }
    if (!result.functions[function].Is(FN_NO_FLOATING_POINT)) {
      mayUse_[function] = true;
      waiting.push_back(function);
    }
  }
  while (!waiting.empty()) {
    const uint32_t function = waiting.back();
    waiting.pop_back();
    // What was the begin of the next one is the end of this one now.
    for (uint32_t i = function == 0 ? 0 : ends[function - 1]; i < ends[function]; ++i) {
      if (!mayUse_[callers[i]]) {
        mayUse_[callers[i]] = true;
        waiting.push_back(callers[i]);
      }
    }
  }
}

bool FloatingPoint::MayBeUsed(const std::vector<uint32_t>& functions) const {
  return std::ranges::any_of(functions, [this](uint32_t function) { return mayUse_[function]; });
}

}  // namespace velkor::reports
