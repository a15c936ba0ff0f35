#pragma once

#include <string>
#include <string_view>

#include "reports/gate/gate_result.h"
#include "reports/result_output.h"

namespace velkor::reports {

// A comment for a change that is reviewed: a heading that is the whole answer, a row for each stack
// that changed or is not in order, a line for each finding; the rest folded away. With nothing to
// say, the heading alone. Without a baseline every stack has its row.
void WriteGateMarkdown(const GateReport& report, ResultOutput& output);

// Text that markup has no power over, on one line.
std::string MarkdownText(std::string_view utf8);

}  // namespace velkor::reports
