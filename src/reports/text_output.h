#pragma once

#include "reports/analysis_result.h"
#include "reports/result_output.h"

namespace velkor::reports {

// All of the analysis for a reader at a terminal: the top-level functions, largest bound first,
// each with the calls that add up to it and with what keeps it from a bound; then the lists of
// functions that need attention, and the notes. full: draws whole call chains; otherwise long ones
// are shown by their two ends.
void WriteAllText(const AnalysisResult& result, bool full, ResultOutput& output);

}  // namespace velkor::reports
