#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/statement_plan.h"
#include "reports/analysis_result.h"

namespace velkor::reports {

// Steps of a plan up to the next one that frees a top-level function: what is to be stated for it.
struct StatementBlock {
  uint32_t frees = 0;
  std::vector<WantedStatement> statements;
};
// The first blocks, at most so many.
std::vector<StatementBlock> StatementBlocks(const StatementPlan& plan, size_t most);

// ", ADD=, RECTIME=, CALL=": the attributes whose values a line has to state.
std::string WantedAttributes(ReasonSet settles);

// "[memcpy], ADD=; main, RECTIME= and 3 more", each name cut to what a line of a terminal bears.
std::string StatementList(const AnalysisResult& result,
                          const std::vector<WantedStatement>& statements);

}  // namespace velkor::reports
