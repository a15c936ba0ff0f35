#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "core/statement_plan.h"
#include "reports/analysis_result.h"
#include "reports/result_output.h"

namespace velkor::reports {

struct AnswerChoice {
  size_t top = 10;                   // numbers, each with the functions that share it
  std::optional<uint32_t> function;  // this one instead of the largest
};

// What a reader at a terminal wants to know first, on one screen: what was read and how much of it
// is bounded, the largest numbers, why the first of them is that large, and what to state so that
// more is bounded. plan: of the top-level functions, or of the chosen function.
void WriteAnswer(const AnalysisResult& result, const StatementPlan& plan,
                 const AnswerChoice& choice, ResultOutput& output);

}  // namespace velkor::reports
