#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "cli/analysis_result.h"

namespace velkor {

// The first functions of one kind that a walk meets, and how many there are.
struct NamedFunctions {
  static constexpr size_t kMostNamed = 10;

  StkFunctionList named;  // at most kMostNamed, nearest to the start first
  uint64_t count = 0;

  void Add(StkFunction& function);
};

// Why a total is only a lower bound. A function can stand in several lists.
struct Uncertainty {
  NamedFunctions unknown;
  NamedFunctions recursive;  // without a stated depth
  NamedFunctions indirect;   // without stated callees
  bool cutShort = false;     // not everything was looked at
};

// How many calls the walks of one search look at.
struct UncertaintyBudget {
  uint64_t exact = 1'000'000;  // of all walks together, as long as each goes to its end
  uint64_t walk = 500;         // of each later one
  uint64_t all = 4'000'000;    // of all together
};

// Finds what is uncertain below functions, one after another. Its budget keeps a program with very
// many top-level functions from taking time in the square of its size; a walk that it cuts short
// says so. The graph must not change meanwhile.
class UncertaintySearch {
 public:
  explicit UncertaintySearch(const AnalysisResult& result, UncertaintyBudget budget = {});

  Uncertainty Below(StkFunction& start);

 private:
  enum Kind : uint8_t { kUnknown = 1, kRecursive = 2, kIndirect = 4 };

  static uint8_t KindsOf(const StkFunction& function);
  void AddCalls(const StkFunctionList& callees);
  void Note(uint32_t index, Uncertainty& found);
  void Enter(uint32_t function);
  // What one walk may look at, and what it did.
  uint64_t WalkBudget() const;
  void Spend(uint64_t calls);

  const AnalysisResult& result_;
  UncertaintyBudget left_;
  // Of the functions that are not complete, by index: all that a walk looks at, close together.
  std::vector<uint32_t> firstCall_;  // in calls_, up to that of the next function
  std::vector<uint32_t> calls_;      // the called ones that are not complete either
  std::vector<uint8_t> kinds_;       // why it is uncertain itself
  std::vector<uint32_t> visitedBy_;  // number of the last walk that met the function
  uint32_t walk_ = 0;
  std::vector<uint32_t> queue_;
};

}  // namespace velkor
