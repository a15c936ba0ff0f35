#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/bounds.h"
#include "messages/message.h"
#include "messages/note.h"
#include "reports/analysis_result.h"

namespace velkor::reports {

// A computed analysis where it was computed; refers to all of it. Texts are bytes of the table's
// code page.
struct ComputedAnalysis {
  std::string_view project;
  std::string_view compilerName;
  std::optional<std::string> compilerVersion;
  AnalysisInputs inputs;
  const std::vector<StkMessage>& log;
  std::vector<StkNote> notes;
  const StkFunctionTable& functions;
  const StkFunctionList& roots;
  const StkBounds& bounds;  // up to date
  // Called every few functions, where there is one. What it throws ends the taking.
  std::function<void()> checkpoint = {};
  size_t threads = 1;  // how many take it; 0: as many as run at once
};

// The analysis as it stands now, as a value of its own. Linear in functions and calls, but for the
// lists, which are sorted. In the thread that owns the tables, with the help of others.
AnalysisResult TakeResult(const ComputedAnalysis& analysis);

}  // namespace velkor::reports
