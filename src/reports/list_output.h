#pragma once

#include "reports/analysis_result.h"
#include "reports/result_output.h"

namespace velkor::reports {

// The part of the text output that lists the unknown, recursive, indirectly calling, adjusted and
// library functions, each by name.
void WriteLists(const AnalysisResult& result, ResultOutput& output);

}  // namespace velkor::reports
