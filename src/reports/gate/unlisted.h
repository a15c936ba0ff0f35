#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "reports/gate/gate_input.h"
#include "reports/gate/interrupt_levels.h"
#include "reports/gate/stack_needs.h"

namespace velkor::reports {

// Functions that begin on a stack of their own, or may, and that no stack, level or list of what is
// ignored counts. Ascending.
struct UnlistedTasks {
  std::vector<uint32_t> tasks;  // the program makes tasks of them
  std::vector<uint32_t> tops;   // nothing calls them, and nothing of the configuration reaches them
};

UnlistedTasks UnlistedTasksOf(const GateInput& input, const InterruptLevels& interrupts,
                              const StackNeeds& needs);

// A name of code that the vector table leads to.
bool IsNameOfHandler(const ProgramFacts& facts, std::string_view name);

}  // namespace velkor::reports
