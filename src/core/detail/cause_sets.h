#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "core/detail/cause_graph.h"

namespace velkor {

// For each node the causes that it misses, itself or below it, unless they are too many to be
// written down for all. Equal sets of a node and of what it calls are kept once.
class CauseSets {
 public:
  // effort: calls and causes that may be looked at, roughly.
  CauseSets(const CauseGraph& graph, uint64_t effort);

  bool AreMany(uint32_t node) const { return sets_[node].count == kMany; }
  // Ascending; none of AreMany.
  std::span<const uint32_t> Of(uint32_t node) const {
    return AreMany(node) ? std::span<const uint32_t>()
                         : std::span(causes_).subspan(sets_[node].first, sets_[node].count);
  }

 private:
  static constexpr uint32_t kMany = std::numeric_limits<uint32_t>::max();
  static constexpr size_t kLeastMany = 9;

  struct Set {
    size_t first = 0;  // in causes_
    uint32_t count = 0;
  };

  Set Collect(const CauseGraph& graph, uint32_t node);
  void Meet(std::span<const uint32_t> causes, uint32_t node);

  size_t many_;
  std::vector<Set> sets_;  // by node
  std::vector<uint32_t> causes_;
  std::vector<uint32_t> metBy_;  // by cause: the last node that misses it
  std::vector<uint32_t> met_;    // of the node that is being collected
};

}  // namespace velkor
