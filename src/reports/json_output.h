#pragma once

#include <cstddef>

#include "reports/analysis_result.h"
#include "reports/result_output.h"

namespace velkor::reports {

inline constexpr unsigned kJsonSchema = 2;

// The analysis as one JSON object in UTF-8, for programs. Keys may be added in later versions,
// none is renamed. threads: how many write it, 0 for as many as run at once; the same bytes for any
// number.
void WriteJson(const AnalysisResult& result, ResultOutput& output, size_t threads = 1);

}  // namespace velkor::reports
