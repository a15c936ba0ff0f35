#pragma once

#include "reports/gate/gate_result.h"
#include "reports/result_output.h"

namespace velkor::reports {

// Workflow commands, one a line, that a build server of GitHub shows as annotations of files: the
// worst findings first, nine of a kind, then one that counts the rest of the kind. The server takes
// ten of a kind from a step.
void WriteGithubAnnotations(const GateReport& report, ResultOutput& output);

}  // namespace velkor::reports
