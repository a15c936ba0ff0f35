#pragma once

#include "reports/analysis_result.h"
#include "reports/result_output.h"

namespace velkor::reports {

inline constexpr unsigned kJsonSchema = 2;

// The analysis as one JSON object in UTF-8, for programs. Keys may be added in later versions,
// none is renamed.
void WriteJson(const AnalysisResult& result, ResultOutput& output);

}  // namespace velkor::reports
