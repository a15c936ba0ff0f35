#include "core/adjustments.h"

#include <atomic>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "core/adjustment_information.h"
#include "core/detail/pending_adjustments.h"
#include "core/function_text.h"
#include "core/test_source.h"
#include "support/computed_graph.h"

namespace velkor {
namespace {

using testing::TestSource;

using Lines = std::vector<std::string>;

StkAdjustment Values(uint32_t margin, uint32_t depth = kNoDepth, StkFunctionList callees = {}) {
  StkAdjustment adjustment;
  adjustment.margin = margin;
  adjustment.depth = depth;
  if (!callees.empty()) {
    adjustment.callees = std::move(callees);
  }
  return adjustment;
}

struct Adjusted : testing::ComputedGraph {
  using ComputedGraph::ComputedGraph;

  bool Adjust(std::string_view name, const StkAdjustment& adjustment) {
    return AdjustFunction(functions, roots, (*this)[name], adjustment, recorder.reporter);
  }
  // The lines since the last call.
  Lines Log() {
    recorder.queue.Drain();
    return std::exchange(recorder.log.lines, {});
  }
};

TEST(Adjustments, InformationIsCutAtAWholeItem) {
  std::string text = "f 1\n";
  for (int i = 1000; i < 1600; ++i) {
    text += "callee" + std::to_string(i) + " 1\n";
  }
  Adjusted graph(text);
  StkFunctionList callees(graph.functions.Functions().begin(), graph.functions.Functions().end());
  callees.erase(callees.begin());
  graph.Adjust("f", Values(65535, kNoDepth, callees));
  // Items of 20 bytes: the last one that fits makes less than 5070 with the text before it, the
  // name "f" and one byte more.
  const std::string margin = "Additional margin is set to 65535";
  const size_t items = (5070 - 1 - 20 - 1 - margin.size() - 1) / 22 + 1;
  std::string whole = "Stack size specification of f adjusted. " + margin;
  for (size_t i = 1; i <= items; ++i) {
    whole += ", callee" + std::to_string(999 + i) + " is added.";
  }
  EXPECT_EQ(graph.Log()[0], whole + ", ....");

  graph["callee1000"].name = graph.functions.AddUnknown("_" + std::string(6000, 'x')).name;
  EXPECT_EQ(AdjustmentInformation(Values(7, 2, {&graph["f"]}), *callees[0], InformationMode::kNew,
                                  graph.recorder.messages)
                .text,
            "Additional margin is set to 7, Recursion depth is set to 2, ...");
}

// What a change says, and that it says nothing where nothing changes.
TEST(Adjustments, TellWhatTheyChange) {
  Adjusted graph("f 1 -> f\ng 1\nstatic h 1\n");
  StkFunction* const g = &graph["g"];
  StkFunction* const h = &graph["h"];
  const struct {
    StkAdjustment adjustment;
    const char* told;
  } steps[] = {
      {Values(10), "Additional margin is set to 10"},
      {Values(10), nullptr},
      {Values(0, 2, {g, h}),
       "Additional margin is set to 0, Recursion depth is set to 2, g is "
       "added., h.c#h is added."},
      {Values(0, 3, {h}), "Recursion depth is set to 3, g is deleted."},
      {Values(kNoMargin, 3, {g}), "Additional margin is deleted, g is added., h.c#h is deleted."},
      {Values(0xFFFFFFFE),
       "Additional margin is set to 4294967294, Recursion depth is deleted, "
       "g is deleted."},
  };
  for (const auto& [adjustment, told] : steps) {
    const bool callees = told != nullptr && std::string(told).ends_with('.');
    EXPECT_EQ(graph.Adjust("f", adjustment), callees);
    const Lines log = graph.Log();
    EXPECT_EQ(told == nullptr
                  ? Lines()
                  : Lines{"Stack size specification of f adjusted. " + std::string(told) + "."},
              Lines(log.begin(), log.begin() + (told == nullptr ? 0 : 1)));
  }
  CancelAdjustment(graph.functions, graph.roots, graph["f"], graph.recorder.reporter);
  EXPECT_EQ(graph.Log(), Lines{"Stack size specification of f canceled."});
}

// The function itself, then each top-level function above it, once.
TEST(Adjustments, TellWhatLeadsOverTheLimit) {
  const struct {
    const char* graph;
    uint32_t margin;
    uint32_t depth;
    Lines told;
  } cases[] = {
      {"top 1 -> f\nf 1\n", 65534, kNoDepth, {"W9466 top"}},
      {"top 1 -> f\nf 1\n", 65535, kNoDepth, {"W9466 f", "W9466 top"}},
      {"top 1 -> f\nf 1\n", 65535, 2, {"W9465 f", "W9466 top"}},
      {"top 1 -> f\nf 32768 -> f\n", kNoMargin, 2, {"W9465 f", "W9466 top"}},
      {"top 1 -> f\nf 32768 -> f\n", 32768, 1, {"W9466 f", "W9466 top"}},
      {"f 1 -> g\ng 1\ntop 65535 -> g\nelse 65536\n", 65535, kNoDepth, {"W9466 f"}},
      {"a 0 -> b c\nb 0 -> f\nc 0 -> f\nd 65000 -> c\nf 0\n", 1000, kNoDepth, {"W9466 d"}},
      {"a 65535 -> b\nb 0 -> a f\nf 0\n", 1, kNoDepth, {"W9466 a"}},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.graph);
    Adjusted graph(each.graph);
    graph.Adjust("f", Values(each.margin, each.depth));
    Lines told;
    for (const std::string& line : graph.Log()) {
      const size_t name = line.find("(") + 1;
      if (line.starts_with("W")) {
        told.push_back(line.substr(0, 6) + line.substr(name, line.find(')') - name));
      }
    }
    EXPECT_EQ(told, each.told);
  }
}

// The answer to each question decides about the next one only; every depth is dropped.
TEST(Adjustments, AskAboutDepthsUntilAnswered) {
  for (const BoxAnswer answer : {BoxAnswer::kRetry, BoxAnswer::kIgnore, BoxAnswer::kAbort}) {
    Adjusted graph("f 1\ng 1\nh 1\n");
    for (const auto& function : graph.functions.Functions()) {
      StkAdjustment pending = Values(kNoMargin, 3);
      pending.line = function->index + 1;
      graph.functions.SetPendingAdjustment(*function, std::move(pending));
    }
    graph.recorder.boxes.answerWith = [&](const auto&) { return answer; };
    TestSource source(SpecificationKind::kUserFile, StopAnswer::kRetry);
    std::atomic<bool> ended = false;
    std::thread job([&] {
      CheckRecursionDepths(graph.functions, source, nullptr, graph.recorder.reporter);
      ended = true;
    });
    while (!ended) {
      graph.recorder.queue.Drain();
      std::this_thread::yield();
    }
    job.join();
    EXPECT_EQ(graph.recorder.boxes.boxes.size(), answer == BoxAnswer::kRetry ? 3u : 1u);
    EXPECT_EQ(graph.Log().size(), answer == BoxAnswer::kAbort ? 1u : 3u);
    for (const auto& function : graph.functions.Functions()) {
      EXPECT_EQ(function->pendingAdjustment->depth, kNoDepth);
    }
  }
}

TEST(Adjustments, SortFunctionsIntoTheThreeLists) {
  Adjusted graph("plain 1\nr 1 -> r\ni 1\n? x\n? lib\n");
  graph["i"].flags |= FN_INDIRECT_CALL;
  graph.SetLibrarySize("lib", 4);
  const auto lists = [&graph] {
    std::string text;
    for (const StkFunction* function : graph.functions.Functions()) {
      text += std::string(IsSizeUnknown(*function) ? "u" : "") +
              (IsAdjusted(*function) ? "a" : "") + (IsSystemLibrary(*function) ? "l" : "") + ",";
    }
    return text;
  };
  EXPECT_EQ(lists(), ",u,u,u,l,");
  for (const auto& function : graph.functions.Functions()) {
    graph.Adjust(CName(*function), Values(1));
  }
  EXPECT_EQ(lists(), "a,a,a,a,a,");
}

}  // namespace
}  // namespace velkor
