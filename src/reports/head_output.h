#pragma once

#include "reports/analysis_result.h"
#include "reports/result_output.h"

namespace velkor::reports {

// The lines with which a text output begins: what was read, and of how many top-level functions the
// bound is known.
void WriteHead(const AnalysisResult& result, ResultOutput& output);

}  // namespace velkor::reports
