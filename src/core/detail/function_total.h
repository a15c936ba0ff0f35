#pragma once

#include <algorithm>
#include <cstdint>

#include "core/function.h"

namespace velkor {

// What a function adds to its largest callee's total, from its frame and its adjustment: the
// pending one if there is one, else the one in force, else the system library's.
struct OwnSize {
  uint32_t frameSize = 0;
  uint32_t margin = 0;  // 0: none
  uint32_t depth = 1;   // 1: none
};
OwnSize OwnSizeOf(const StkFunction& function);
// kOverSize for a total over the limit.
uint32_t TotalOf(const OwnSize& own, uint32_t maxCalleeSize, uint32_t sizeLimit);

// What a function's callees bring to it, those with a result as well as those that are still being
// computed further up the path of the walk.
class CalleeResults {
 public:
  void AddComputed(uint32_t total, uint32_t chainCount) {
    maxSize_ = std::max(maxSize_, total);
    chains_ += chainCount;
  }
  // The top-level function at the head of the path counts for nothing, any other ends one chain.
  void AddUnfinished(bool isRoot) { chains_ += isRoot ? 0u : 1u; }

  uint32_t MaxSize() const { return maxSize_; }
  uint32_t ChainCount() const {
    return static_cast<uint32_t>(
        std::clamp<uint64_t>(chains_, 1, static_cast<uint64_t>(kMaxChainCount)));
  }

 private:
  uint32_t maxSize_ = 0;
  uint64_t chains_ = 0;
};

}  // namespace velkor
