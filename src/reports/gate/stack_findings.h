#pragma once

#include <optional>
#include <vector>

#include "reports/gate/baseline.h"
#include "reports/gate/finding_places.h"
#include "reports/gate/gate_input.h"
#include "reports/gate/stack_change.h"
#include "reports/gate/stack_needs.h"

namespace velkor::reports {

// The worst of over-budget, headroom and regression that holds of a stack, as its state and as a
// finding; none where none holds. change: against the baseline, where that has the stack.
// isOtherCompiler: the baseline is of another one, so that a regression only warns.
std::optional<Finding> JudgeStack(const GateInput& input, StackNeed& need,
                                  const std::optional<StackChange>& change, bool isOtherCompiler,
                                  FindingPlaces& places);

// "task_rx 16 + parse 236 + frame 36 = 288", the smaller ones of many functions together.
std::string RowsLine(const GateStack& stack);

}  // namespace velkor::reports
