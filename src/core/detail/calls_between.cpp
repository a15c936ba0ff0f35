#include "core/detail/calls_between.h"

namespace velkor {

std::optional<std::vector<bool>> CallsBetween::Find(uint32_t callee, uint32_t caller) const {
  std::vector<bool> met(table_.Count(), false);
  std::vector<uint32_t> waiting{callee};
  met[callee] = true;
  size_t calls = 0;
  while (!waiting.empty()) {
    const StkFunction& function = *table_.Functions()[waiting.back()];
    waiting.pop_back();
    const CallRange below = calls_(function);
    calls += below.size();
    if (numbers_[function.index] == numbers_[caller] || calls > kMostCalls) {
      return std::nullopt;
    }
    for (const StkFunction* each : below) {
      const uint32_t index = table_.IndexOf(*each);
      if (numbers_[index] >= numbers_[caller] && !met[index]) {
        met[index] = true;
        waiting.push_back(index);
      }
    }
  }
  return met;
}

}  // namespace velkor
