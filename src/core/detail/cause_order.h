#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "core/detail/cause_graph.h"
#include "core/detail/cause_sets.h"

namespace velkor {

// Finds the order in which the causes of a graph are best taken away: again and again all that some
// top-level functions still miss, where that frees the most of them for the number of causes. What
// such a choice holds, and what no choice holds, comes in the order of how many top-level functions
// it keeps from a bound. Used once.
class CauseOrder {
 public:
  CauseOrder(const CauseGraph& graph, PlanningEffort effort);

  // All causes, the first to be taken away first.
  std::vector<uint32_t> Find();

 private:
  // Causes that top-level functions miss, all of them and no other.
  struct Choice {
    std::span<const uint32_t> causes;
    uint64_t entries = 0;
    size_t left = 0;    // of the causes, not yet taken
    uint64_t mark = 0;  // of those: equal for equal ones

    bool IsBetterThan(const Choice& other) const;
  };

  void FindChoices();
  void JoinEqual();
  void TakeOneByOne();
  void TakeAllAtOnce();
  void TakeAll(std::span<const uint32_t> causes);
  void SortByKept();
  void CountKept(uint32_t first, std::vector<uint64_t>& kept);

  const CauseGraph& graph_;
  const PlanningEffort most_;
  const CauseSets sets_;
  std::vector<Choice> choices_;
  std::vector<uint32_t> byKept_;  // all causes, those that keep the most from a bound first
  std::vector<uint32_t> rank_;    // of each cause in byKept_
  std::vector<bool> isTaken_;
  std::vector<uint32_t> order_;
  uint64_t effort_ = 0;
};

}  // namespace velkor
