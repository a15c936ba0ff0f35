#include "reports/statement_blocks.h"

#include <algorithm>
#include <utility>

#include "reports/terminal_text.h"

namespace velkor::reports {

std::vector<StatementBlock> StatementBlocks(const StatementPlan& plan, size_t most) {
  std::vector<StatementBlock> blocks;
  StatementBlock block;
  for (const PlannedStep& step : plan.steps) {
    block.statements.insert(block.statements.end(), step.statements.begin(), step.statements.end());
    if (step.frees == 0) {
      continue;
    }
    block.frees = step.frees;
    blocks.push_back(std::exchange(block, {}));
    if (blocks.size() == most) {
      break;
    }
  }
  return blocks;
}

std::string WantedAttributes(ReasonSet settles) {
  std::string text;
  if (settles.Has(ReasonKind::kUnknown) || settles.Has(ReasonKind::kDynamic)) {
    text += ", ADD=";
  }
  if (settles.Has(ReasonKind::kRecursion)) {
    text += ", RECTIME=";
  }
  if (settles.Has(ReasonKind::kIndirect) || settles.Has(ReasonKind::kHiddenCall)) {
    text += ", CALL=";
  }
  return text;
}

std::string StatementList(const AnalysisResult& result,
                          const std::vector<WantedStatement>& statements) {
  constexpr size_t kMostShown = 3;
  std::string text;
  const size_t shown = std::min(kMostShown, statements.size());
  for (size_t i = 0; i < shown; ++i) {
    const uint32_t function = statements[i].function;
    text += i == 0 ? "" : "; ";
    text += CutName(result.Statement(function).value_or(result.SpecName(function)));
    text += WantedAttributes(statements[i].settles);
  }
  if (shown < statements.size()) {
    text += " and " + std::to_string(statements.size() - shown) + " more";
  }
  return text;
}

}  // namespace velkor::reports
