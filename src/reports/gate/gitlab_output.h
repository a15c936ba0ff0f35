#pragma once

#include "reports/gate/gate_result.h"
#include "reports/result_output.h"

namespace velkor::reports {

// A code quality report of GitLab: an array with one object a finding.
void WriteGitlabReport(const GateReport& report, ResultOutput& output);

}  // namespace velkor::reports
