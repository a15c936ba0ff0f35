#pragma once

#include "reports/gate/gate_result.h"
#include "reports/result_output.h"

namespace velkor::reports {

// Everything that the gate says, as one JSON object of schema 2. The rows of a stack sum to its
// known bytes.
void WriteGateJson(const GateReport& report, ResultOutput& output);

}  // namespace velkor::reports
