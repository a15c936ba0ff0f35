#pragma once

#include <cstdint>
#include <vector>

#include "reports/analysis_result.h"
#include "reports/result_output.h"

namespace velkor::reports {

// The top-level functions in the order in which they are shown: what is known of them largest
// first, equal ones in table order.
std::vector<uint32_t> LargestFirst(const AnalysisResult& result);

// The part of the text output that shows each top-level function with its bound taken apart.
void WriteChains(const AnalysisResult& result, bool full, ResultOutput& output);

}  // namespace velkor::reports
