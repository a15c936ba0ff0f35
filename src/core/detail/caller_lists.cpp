#include "core/detail/caller_lists.h"

#include <cstddef>
#include <numeric>

namespace velkor {

// Counts first, so that each caller is written where it stays.
CallerLists::CallerLists(const ResolvedCalls& calls)
    : ends_(calls.ends.size(), 0), callers_(calls.callees.size()) {
  for (const uint32_t callee : calls.callees) {
    ++ends_[callee];
  }
  // Each is where the callers of the function begin, and in the end where those of the next do.
  std::exclusive_scan(ends_.begin(), ends_.end(), ends_.begin(), uint32_t{0});
  uint32_t call = 0;
  for (uint32_t caller = 0; caller < calls.ends.size(); ++caller) {
    for (; call < calls.ends[caller]; ++call) {
      callers_[ends_[calls.callees[call]]++] = caller;
    }
  }
}

}  // namespace velkor
