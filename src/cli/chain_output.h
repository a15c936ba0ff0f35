#pragma once

#include "cli/analysis_result.h"
#include "cli/result_output.h"

namespace velkor {

// The top-level functions in the order in which they are shown: over the limit, then largest
// total first, then unknown; equal ones in table order.
StkFunctionList LargestFirst(StkFunctionList roots);

// The part of the text output that shows each top-level function with its maximum chain.
void WriteChains(const AnalysisResult& result, bool full, ResultOutput& output);

}  // namespace velkor
