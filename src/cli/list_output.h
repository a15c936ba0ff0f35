#pragma once

#include "cli/analysis_result.h"
#include "cli/result_output.h"

namespace velkor {

// The part of the text output that lists the unknown, recursive, indirectly calling, adjusted and
// library functions, each by name.
void WriteLists(const AnalysisResult& result, ResultOutput& output);

}  // namespace velkor
