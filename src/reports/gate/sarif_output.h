#pragma once

#include "reports/gate/gate_result.h"
#include "reports/result_output.h"

namespace velkor::reports {

// What a service for code takes at most, of one run. The service of GitHub takes 25,000 results and
// 10 MB, and of each flow 1,000 steps.
struct SarifLimits {
  size_t results = 25'000;
  size_t bytes = 9'500'000;
  size_t steps = 1'000;
};

// A log of SARIF 2.1.0 with one run. What the limits leave out is told in a notification; the worst
// findings stay.
void WriteSarif(const GateReport& report, const SarifLimits& limits, ResultOutput& output);

}  // namespace velkor::reports
