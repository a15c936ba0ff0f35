#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "reports/gate/gate_input.h"
#include "reports/gate/gate_result.h"
#include "reports/gate/interrupt_levels.h"
#include "reports/gate/stack_figures.h"

namespace velkor::reports {

// A stack with what it needs, before anything is judged.
struct StackNeed {
  GateStack stack;
  // What its need depends on: its entries, and the handlers that it carries. Without a bound of
  // each there is none of the stack.
  std::vector<uint32_t> dependsOn;
  bool isOver = false;    // a bound among them is above the limit of the input
  std::string sizeError;  // a phrase; empty: the size is known
  TextPlace sizePlace;
  std::vector<InterruptLevels::Missing> missing;  // entries that are not found
};

struct StackNeeds {
  std::vector<StackNeed> stacks;  // of the configuration, then limits
  std::vector<GateFault> faults;
};

// Need of the stack that carries the interrupts: the largest bound of its entries + I + reserve,
// where I is the sum over the levels of (largest bound of the level + frame). Of another one: the
// largest bound + frame + switch + reserve. Where no stack is named for the interrupts: the largest
// bound + I + switch + reserve; and one frame in place of I where no handler is known and none is
// said to be none.
StackNeeds NeedsOf(const GateInput& input, const InterruptLevels& interrupts,
                   const StackFigures& figures);

}  // namespace velkor::reports
