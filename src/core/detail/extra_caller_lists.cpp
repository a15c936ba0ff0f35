#include "core/detail/extra_caller_lists.h"

#include <algorithm>

namespace velkor {

void ExtraCallerLists::Add(uint32_t callee, uint32_t caller) {
  std::vector<uint32_t>& callers = callers_[callee];
  callers.insert(std::ranges::upper_bound(callers, caller), caller);
}

void ExtraCallerLists::Remove(uint32_t callee, uint32_t caller) {
  const auto found = callers_.find(callee);
  found->second.erase(std::ranges::lower_bound(found->second, caller));
  if (found->second.empty()) {
    callers_.erase(found);
  }
}

std::span<const uint32_t> ExtraCallerLists::Of(uint32_t callee) const {
  const auto found = callers_.find(callee);
  return found == callers_.end() ? std::span<const uint32_t>() : std::span(found->second);
}

}  // namespace velkor
