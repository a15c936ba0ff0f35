#pragma once

#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

namespace velkor {

// For each function those whose extra callees it is among, ascending, as often as it is; functions
// known by their index. Few functions have any, and one call can be added or taken without a look
// at the others.
class ExtraCallerLists {
 public:
  void Add(uint32_t callee, uint32_t caller);
  // One of such calls, which must be there.
  void Remove(uint32_t callee, uint32_t caller);
  // Valid until the next change.
  std::span<const uint32_t> Of(uint32_t callee) const;

 private:
  std::unordered_map<uint32_t, std::vector<uint32_t>> callers_;  // no empty ones
};

}  // namespace velkor
