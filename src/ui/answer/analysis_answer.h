#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "core/statement_plan.h"
#include "document/document.h"
#include "document/table_reading.h"
#include "reports/analysis_result.h"
#include "reports/gate/gate.h"
#include "reports/icicle.h"
#include "ui/ui_context.h"

namespace velkor::ui {

// What an analysis comes to: all that the window tells of it beside the rows of its functions. A
// value that nothing changes, so that it is made in one thread and shown in another. Functions are
// their indices in the table; they stay the same until the document is told to clear.
struct AnalysisAnswer {
  static constexpr size_t kMostEntries = 1000;

  reports::AnalysisResult result;
  std::vector<uint32_t> entries;  // top-level ones, as reports order them; at most kMostEntries
  size_t unbounded = 0;           // of all top-level ones
  StatementPlan plan;
  std::optional<reports::GateOutcome> gate;  // none: no stacks are stated
  reports::Icicle icicle;
};

// How to make the answer of the document as it stands, in any thread. None without functions, or
// while they belong to a job. In the user-interface thread; what it returns may be called as long
// as the document leaves its tables alone.
using AnswerMaking =
    std::function<std::shared_ptr<const AnalysisAnswer>(const StkTableReading::Checkpoint&)>;
AnswerMaking AnswerOf(UiContext& context);

}  // namespace velkor::ui
