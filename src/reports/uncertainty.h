#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "reports/analysis_result.h"

namespace velkor::reports {

// The first functions of one kind that a walk meets, and how many there are.
struct NamedFunctions {
  static constexpr size_t kMostNamed = 10;

  std::vector<uint32_t> named;  // at most kMostNamed, nearest to the start first
  uint64_t count = 0;

  void Add(uint32_t function);
};

// Why a function has no bound: the functions that it can reach, itself included, and that miss
// something, by what they miss. One can stand in several lists.
struct Uncertainty {
  std::array<NamedFunctions, kReasonKinds.size()> byKind;  // in the order of kReasonKinds
  bool cutShort = false;                                   // not everything was looked at

  const NamedFunctions& Of(ReasonKind kind) const { return byKind[static_cast<size_t>(kind)]; }
};

// How many calls the walks of one search look at.
struct UncertaintyBudget {
  uint64_t exact = 1'000'000;  // of all walks together, as long as each goes to its end
  uint64_t walk = 500;         // of each later one
  uint64_t all = 4'000'000;    // of all together
};

// Finds what keeps functions from having a bound, one function after another. Its budget keeps a
// program with very many top-level functions from taking time in the square of its size; a walk
// that it cuts short says so.
class UncertaintySearch {
 public:
  explicit UncertaintySearch(const AnalysisResult& result, UncertaintyBudget budget = {});

  Uncertainty Below(uint32_t start);

 private:
  bool IsUnbounded(uint32_t function) const;
  // At most as many as the walks look at.
  size_t CountCalls() const;
  void AddCalls(uint32_t function);
  void Note(uint32_t function, Uncertainty& found);
  void Enter(uint32_t function);
  // What one walk may look at, and what it did.
  uint64_t WalkBudget() const;
  void Spend(uint64_t calls);

  const AnalysisResult& result_;
  UncertaintyBudget left_;
  // Of the functions without a bound, by index: all that a walk looks at, close together.
  std::vector<uint32_t> firstCall_;  // in calls_, up to that of the next function
  std::vector<uint32_t> calls_;      // the called ones that have none either
  std::vector<ReasonSet> reasons_;   // its own
  std::vector<uint32_t> visitedBy_;  // number of the last walk that met the function
  uint32_t walk_ = 0;
  std::vector<uint32_t> queue_;
};

}  // namespace velkor::reports
