#pragma once

#include <span>

#include "core/statement_plan.h"
#include "reports/analysis_result.h"
#include "reports/gate/gate_result.h"
#include "reports/result_output.h"

namespace velkor::reports {

// The analysis as one page of HTML that refers to nothing outside itself: the picture of the
// largest numbers, why they are that large, what to state, and the table of the top-level
// functions. Readable without its script, which filters the table; without regard to where and when
// it is written, so that equal analyses give equal pages.
// stacks: those of velkor.toml, which come first.
void WritePage(const AnalysisResult& result, const StatementPlan& plan,
               std::span<const GateStack> stacks, ResultOutput& output);

}  // namespace velkor::reports
