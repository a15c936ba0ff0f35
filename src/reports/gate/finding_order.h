#pragma once

#include <vector>

#include "reports/gate/gate_result.h"

namespace velkor::reports {

// Worst first: by severity, then by the rules that matter most, then by bytes. For services that
// take only so many.
std::vector<const Finding*> WorstFirst(const GateReport& report);

}  // namespace velkor::reports
