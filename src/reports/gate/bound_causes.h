#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "reports/analysis_result.h"
#include "reports/gate/gate_result.h"

namespace velkor::reports {

// What keeps stacks from having a bound: every function that misses something and that a stack can
// reach, and every group of recursion without a limit, once each. Linear in functions and calls for
// each stack without a bound.
class BoundCauses {
 public:
  explicit BoundCauses(const AnalysisResult& result)
      : result_(result), met_(result.functions.size(), kNone) {}

  // What the stack of that number, none of the earlier ones, depends on.
  void AddStack(uint32_t stack, const std::vector<uint32_t>& functions);
  // By name.
  std::vector<BoundCause> Take();

 private:
  static constexpr uint32_t kNone = 0xFFFFFFFF;

  void Meet(uint32_t function, uint32_t stack);
  void AddCause(ReasonKind kind, uint32_t function, uint32_t stack);
  uint32_t NamedMemberOf(uint32_t group);

  const AnalysisResult& result_;
  std::vector<uint32_t> met_;  // the last stack that reached the function
  std::vector<uint32_t> waiting_;
  std::vector<BoundCause> causes_;
  std::unordered_map<uint64_t, size_t> places_;  // of kind and function; asked, never walked
  std::unordered_map<uint32_t, uint32_t> namedMembers_;  // by group, likewise
};

// "memcpy is not defined, and its size is not stated": a sentence without its full stop.
std::string TextOf(const BoundCause& cause, const AnalysisResult& result);
// What to state.
std::string HelpFor(const BoundCause& cause, const AnalysisResult& result);

}  // namespace velkor::reports
