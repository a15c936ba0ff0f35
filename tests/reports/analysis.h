#pragma once

#include <cstddef>
#include <cstdio>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "core/bound_notes.h"
#include "core/recompute.h"
#include "reports/analysis_result.h"
#include "reports/result_output.h"
#include "reports/take_result.h"
#include "support/graph.h"
#include "support/recorder.h"

namespace velkor::testing {

// A graph with its totals and bounds, as an analysis would leave it.
struct Analysis {
  explicit Analysis(std::string_view text, CodePage codePage = CodePage::Utf8(), size_t threads = 1)
      : graph(text, std::move(codePage), threads) {
    for (StkFunction* function : graph.functions.Functions()) {
      if (function->adjustment) {
        StkAdjustment pending;
        pending.callees = function->extraCallees;
        function->pendingAdjustment = std::make_unique<StkAdjustment>(pending);
      }
    }
    Compute();
  }
  // Each function as a line of a specification file would state it.
  void Adjust(StkFunction& function, uint32_t margin, uint32_t depth) {
    StkAdjustment pending;
    pending.margin = margin;
    pending.depth = depth;
    pending.callees = function.extraCallees;
    function.pendingAdjustment = std::make_unique<StkAdjustment>(pending);
  }
  void Compute() {
    Recompute(graph.functions, roots, true, nullptr, nullptr, recorder.reporter);
    bounds.Update();
  }

  reports::AnalysisResult Result(size_t threads = 1) {
    return reports::TakeResult({.project = "app.prj",
                                .compilerName = "CCTarn",
                                .compilerVersion = "3.70",
                                .inputs = {},
                                .log = log,
                                .notes = BoundNotes(graph.functions, bounds, recorder.messages),
                                .functions = graph.functions,
                                .roots = roots.Functions(),
                                .bounds = bounds,
                                .threads = threads});
  }

  Graph graph;
  Recorder recorder{graph.codePage};
  StkRootList roots;
  StkBounds bounds{graph.functions};
  std::vector<StkMessage> log;
};

inline std::string Written(const std::function<void(reports::ResultOutput&)>& write) {
  std::FILE* file = std::tmpfile();
  reports::ResultOutput output(file);
  write(output);
  EXPECT_TRUE(output.Finish());
  std::string text(static_cast<size_t>(std::ftell(file)), '\0');
  std::rewind(file);
  EXPECT_EQ(std::fread(text.data(), 1, text.size(), file), text.size());
  std::fclose(file);
  return text;
}

}  // namespace velkor::testing
