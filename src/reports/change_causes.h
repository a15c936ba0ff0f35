#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "reports/comparison.h"
#include "reports/function_matching.h"

namespace velkor::reports {

// Finds why top-level functions of one analysis, the worse one, take more than in the other, the
// better one; or why they miss something that they did not miss there. All answers together have a
// fixed effort; what is asked after it says only that the path is another one.
class ChangeCauses {
 public:
  // matched: by function of the worse one the same of the better one, or FunctionMatching::kNone.
  ChangeCauses(const ComparedAnalysis& worse, const ComparedAnalysis& better,
               std::span<const uint32_t> matched);

  // Without the entries. of: a function that both hold.
  ChangeCause Of(uint32_t entry);

 private:
  // One function of the heaviest path, or the group through which the path leads.
  struct Step {
    uint32_t function = 0;  // by which it is entered
    uint32_t group = StkBounds::kNoGroup;
  };

  std::vector<Step> HeaviestPath(uint32_t entry);
  std::span<const uint32_t> FunctionsOf(const Step& step) const;
  uint32_t HeaviestCallee(const Step& step);
  std::optional<ChangeCause> NewReason(uint32_t entry);
  std::optional<ChangeCause> GrownSize(const std::vector<Step>& path) const;
  std::optional<ChangeCause> NewCall(const std::vector<Step>& path) const;
  std::optional<ChangeCause> OtherRounds(const std::vector<Step>& path) const;
  bool WasCalled(const Step& caller, uint32_t callee) const;
  uint64_t Growth(uint32_t function) const;
  ChangeCause At(ChangeCause::Kind kind, const std::vector<Step>& path, size_t step,
                 uint32_t function) const;
  std::vector<uint32_t> PathTo(uint32_t entry, uint32_t function);

  const ComparedAnalysis& worse_;
  const ComparedAnalysis& better_;
  const std::span<const uint32_t> matched_;
  std::vector<uint32_t> callerOf_;  // of a search, by function
  uint64_t effort_ = 0;             // calls looked at
};

}  // namespace velkor::reports
