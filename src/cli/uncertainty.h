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
// time in the square of its size; walks beyond that are cut short and say so.
class UncertaintySearch {
 public:
  static constexpr uint64_t kMostCalls = 50'000'000;

  explicit UncertaintySearch(const AnalysisResult& result, uint64_t mostCalls = kMostCalls);

  Uncertainty Below(StkFunction& start);

 private:
  void Note(StkFunction& function, Uncertainty& found);
  void Enter(const StkFunctionList& callees);

  const AnalysisResult& result_;
  uint64_t callsLeft_;
  std::vector<uint32_t> visitedBy_;  // number of the last walk that met the function
  uint32_t walk_ = 0;
  StkFunctionList queue_;
};

}  // namespace velkor
