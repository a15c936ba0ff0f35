#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/bounds.h"
#include "core/reason.h"
#include "reports/analysis_result.h"
#include "reports/text_list.h"

namespace velkor::reports {

// One function of an analysis that is compared with another one.
struct ComparedFunction {
  uint64_t own = 0;    // bytes of one activation
  uint64_t known = 0;  // bytes: the bound, unless the state is kUnbounded
  uint32_t file = kNoFile;
  uint32_t line = 0;
  uint32_t group = StkBounds::kNoGroup;
  uint32_t firstCall = 0;
  uint32_t firstReason = 0;
  uint32_t depth = kNoDepth;
  BoundState state{};
  bool isTopLevel = false;
};

// What a comparison needs of an analysis, whether it was just made or comes from a file.
struct ComparedAnalysis {
  std::string label;  // what the user calls it
  std::vector<ComparedFunction> functions;
  // By function: what it is known by in another analysis (its statement without the numbers that a
  // compiler gives to clones), its symbol, and what is shown.
  TextList keys;
  TextList symbols;
  TextList names;
  std::vector<std::string> files;
  std::vector<uint32_t> calls;
  std::vector<ReasonWitness> reasons;
  std::vector<std::vector<uint32_t>> groups;  // members
  std::vector<uint64_t> activations;          // by group: of what limits it; 0: nothing does

  std::span<const uint32_t> Callees(uint32_t function) const;
  std::span<const ReasonWitness> Reasons(uint32_t function) const;
};

// "x.c#f.part.3" as "x.c#f.part": builds number the clones of a function as they come.
std::string WithoutCloneNumbers(std::string_view name);

ComparedAnalysis TakeCompared(const AnalysisResult& result);

}  // namespace velkor::reports
