#pragma once

#include <cstdint>
#include <vector>

#include "reports/compared_analysis.h"

namespace velkor::reports {

// Which functions of two analyses are the same.
struct FunctionMatching {
  static constexpr uint32_t kNone = 0xFFFFFFFF;

  FunctionMatching(const ComparedAnalysis& before, const ComparedAnalysis& after);

  std::vector<uint32_t> before;  // by function of the later one
  std::vector<uint32_t> after;   // by function of the earlier one
  size_t count = 0;

 private:
  void Join(uint32_t earlier, uint32_t later);
  void JoinEqual(const TextList& earlier, const TextList& later, bool onlySingle);
};

}  // namespace velkor::reports
