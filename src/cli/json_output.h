#pragma once

#include "cli/analysis_result.h"
#include "cli/result_output.h"

namespace velkor {

// The analysis as one JSON object in UTF-8, for programs. Keys may be added in later versions,
// none is renamed.
void WriteJson(const AnalysisResult& result, ResultOutput& output);

}  // namespace velkor
