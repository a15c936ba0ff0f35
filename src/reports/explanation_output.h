#pragma once

#include <cstdint>
#include <vector>

#include "reports/analysis_result.h"
#include "reports/gate/gate_result.h"
#include "reports/result_output.h"

namespace velkor::reports {

// The bound of one function, or what is known at least, taken apart into rows whose bytes add up
// to it: for a reader at a terminal, with what keeps it from a bound, and as one JSON object.
// Nothing is left out, but for the paths of a group of recursion that hold millions of calls.
// Behind it, of the stacks that begin with the function, what lies there besides.
void WriteExplanation(const AnalysisResult& result, uint32_t function, ResultOutput& output,
                      const std::vector<GateStack>& stacks = {});
void WriteExplanationJson(const AnalysisResult& result, uint32_t function, ResultOutput& output,
                          const std::vector<GateStack>& stacks = {});

}  // namespace velkor::reports
