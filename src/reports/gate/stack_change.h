#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "reports/gate/baseline.h"
#include "reports/gate/gate_result.h"

namespace velkor::reports {

// What of a stack is other than in the baseline, which has it.
struct StackChange {
  int64_t change = 0;  // of the known bytes
  bool lostBound = false;
  bool isNowKnown = false;  // what it missed, or a part of that, is known
  bool hasGrown = false;    // by more than is allowed
  // The function of the path to blame: whose own bytes grew most; where none of them grew, the
  // first one that the path did not lead to.
  struct Blamed {
    uint32_t function = 0;
    uint32_t caller = 0;             // the function itself at the begin of the path
    std::optional<uint64_t> before;  // none: it was not there
    uint64_t after = 0;
  };
  std::optional<Blamed> blamed;
};

// names: what the baseline calls the functions of the rows, by row. growth: bytes that are allowed;
// none: any. missesLess: something that the stack missed in the baseline is known now.
StackChange ChangeOf(const GateStack& stack, const std::vector<std::string>& names,
                     const Baseline::Stack& before, std::optional<uint32_t> growth,
                     bool missesLess);

}  // namespace velkor::reports
