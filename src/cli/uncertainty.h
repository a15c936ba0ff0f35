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

// Finds what is uncertain below functions, one after another. All walks together look at a
// bounded number of calls, so that a program with very many top-level functions does not take
// time in the square of its size; walks beyond that are cut short and say so. The graph must not
// change meanwhile.
class UncertaintySearch {
 public:
  static constexpr uint64_t kMostCalls = 20'000'000;

  explicit UncertaintySearch(const AnalysisResult& result, uint64_t mostCalls = kMostCalls);

  Uncertainty Below(StkFunction& start);

 private:
  enum Kind : uint8_t { kUnknown = 1, kRecursive = 2, kIndirect = 4 };

  static uint8_t KindsOf(const StkFunction& function);
  void AddCalls(const StkFunctionList& callees);
  void Note(uint32_t index, Uncertainty& found);
  void Enter(uint32_t function);

  const AnalysisResult& result_;
  uint64_t callsLeft_;
  // Of the functions that are not complete, by index: all that a walk looks at, close together.
  std::vector<uint32_t> firstCall_;  // in calls_, up to that of the next function
  std::vector<uint32_t> calls_;      // the called ones that are not complete either
  std::vector<uint8_t> kinds_;       // why it is uncertain itself
  std::vector<uint32_t> visitedBy_;  // number of the last walk that met the function
  uint32_t walk_ = 0;
  std::vector<uint32_t> queue_;
};

}  // namespace velkor
