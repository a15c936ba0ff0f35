#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace velkor {

// What each function calls, functions known by their index.
struct ResolvedCalls {
  std::vector<uint32_t> callees;  // by caller, no two equal ones of one caller
  std::vector<uint32_t> ends;     // in callees, by caller

  uint32_t StartOf(uint32_t caller) const { return caller == 0 ? 0 : ends[caller - 1]; }
};

// The same calls from the other side: for each function those that call it, ascending. Callers are
// only ever walked, so they are plain numbers in one piece of memory.
class CallerLists {
 public:
  CallerLists() = default;  // nothing calls anything
  // Linear.
  explicit CallerLists(const ResolvedCalls& calls);

  std::span<const uint32_t> Of(uint32_t function) const {
    if (function >= ends_.size()) {
      return {};
    }
    const uint32_t start = function == 0 ? 0 : ends_[function - 1];
    return std::span(callers_).subspan(start, ends_[function] - start);
  }

 private:
  std::vector<uint32_t> ends_;  // in callers_, by function
  std::vector<uint32_t> callers_;
};

}  // namespace velkor
