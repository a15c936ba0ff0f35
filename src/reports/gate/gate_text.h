#pragma once

#include <span>

#include "reports/gate/gate_result.h"
#include "reports/result_output.h"

namespace velkor::reports {

// For people and for editors that find places in lines: a line for each finding, with the need
// taken apart and what to do below it; then a line for each stack, and the verdict. Of warnings of
// one rule as many as a screen bears.
void WriteGateText(const GateReport& report, ResultOutput& output);

// Each with need, size, what is free and its state, in columns.
void WriteStackLines(std::span<const GateStack> stacks, ResultOutput& output);

// "1 stack: 2 errors, 1 warning: not passed", of one line.
std::string VerdictLine(const GateReport& report);

}  // namespace velkor::reports
