#pragma once

#include "reports/comparison.h"
#include "reports/result_output.h"

namespace velkor::reports {

// Two analyses side by side for programs, as one JSON object, the unchanged functions included.
void WriteComparisonJson(const Comparison& comparison, const ComparedAnalysis& before,
                         const ComparedAnalysis& after, ResultOutput& output);

}  // namespace velkor::reports
