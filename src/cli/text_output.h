#pragma once

#include "cli/analysis_result.h"
#include "cli/result_output.h"

namespace velkor {

// The analysis for a reader at a terminal: the top-level functions, largest total first, each
// with the call chain that takes it and with what is uncertain about it; then the lists of
// functions that need attention.
// full: draws whole call chains; otherwise long ones are shown by their two ends.
void WriteText(const AnalysisResult& result, bool full, ResultOutput& output);

}  // namespace velkor
