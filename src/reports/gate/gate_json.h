#pragma once

#include "reports/gate/gate_result.h"
#include "reports/json_writer.h"
#include "reports/result_output.h"

namespace velkor::reports {

// Everything that the gate says, as one JSON object of schema 2. The rows of a stack sum to its
// known bytes.
void WriteGateJson(const GateReport& report, ResultOutput& output);

// The member "rows" of the object that is being written: what the need of the stack consists of.
void WriteStackRows(const GateStack& stack, JsonWriter& json);

}  // namespace velkor::reports
