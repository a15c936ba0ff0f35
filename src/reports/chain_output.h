#pragma once

#include "reports/analysis_result.h"
#include "reports/result_output.h"

namespace velkor::reports {

// The part of the text output that shows each top-level function with its bound taken apart.
void WriteChains(const AnalysisResult& result, bool full, ResultOutput& output);

}  // namespace velkor::reports
