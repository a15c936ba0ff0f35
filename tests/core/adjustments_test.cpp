#include "core/adjustments.h"

#include <atomic>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "core/function_text.h"
#include "core/test_source.h"
#include "support/graph.h"
#include "support/recorder.h"

namespace velkor {
namespace {

using testing::Graph;
using testing::Recorder;
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

struct Adjusted : Graph {
  explicit Adjusted(std::string_view text) : Graph(text) {
    Recompute(functions, roots, true, nullptr, nullptr, recorder.reporter);
  }
  bool Adjust(std::string_view name, const StkAdjustment& adjustment) {
    return AdjustFunction(functions, roots, (*this)[name], adjustment, recorder.reporter);
  }
  bool Cancel(std::string_view name) {
    return CancelAdjustment(functions, roots, (*this)[name], recorder.reporter);
  }
  void Apply(SpecificationSource& source) {
    Recompute(functions, roots, true, &source, nullptr, recorder.reporter);
  }
  // The lines since the last call.
  Lines Log() {
    recorder.queue.Drain();
    return std::exchange(recorder.log.lines, {});
  }
  std::string Information(std::string_view name, const StkAdjustment& adjustment) {
    return AdjustmentInformation(adjustment, (*this)[name], InformationMode::kCompare,
                                 recorder.messages)
        .text;
  }

  Recorder recorder{codePage};
  StkRootList roots;
};

TEST(Adjustments, LogWhatChanges) {
  Adjusted graph("f 10 -> f\ng 1\nh 2\n");
  EXPECT_FALSE(graph.Adjust("f", Values(4)));
  EXPECT_EQ(graph.Log(), Lines{"Stack size specification of f adjusted. Additional margin is set "
                               "to 4."});
  EXPECT_EQ(graph.functions.AdjustedCount(), 1u);
  EXPECT_EQ(graph["f"].totalStackSize, 14u);

  EXPECT_FALSE(graph.Adjust("f", Values(4)));
  EXPECT_EQ(graph.Log(), Lines());
  EXPECT_EQ(graph.functions.AdjustedCount(), 1u);

  EXPECT_FALSE(graph.Adjust("f", Values(4, 3)));
  EXPECT_EQ(graph["f"].totalStackSize, 42u);
  EXPECT_FALSE(graph.Adjust("f", Values(4)));
  EXPECT_TRUE(graph.Adjust("f", Values(kNoMargin, 2, {&graph["g"]})));
  EXPECT_TRUE(graph.Adjust("f", Values(kNoMargin, 2, {&graph["h"]})));
  EXPECT_EQ(
      graph.Log(),
      (Lines{"Stack size specification of f adjusted. Recursion depth is set to 3.",
             "Stack size specification of f adjusted. Recursion depth is deleted.",
             "Stack size specification of f adjusted. Additional margin is deleted, Recursion "
             "depth is set to 2, g is added..",
             "Stack size specification of f adjusted. h is added., g is deleted.."}));
  EXPECT_EQ(graph["f"].totalStackSize, 24u);
}

TEST(Adjustments, CancelTakesThemBack) {
  Adjusted graph("static f 10\ng 20\n? x\n");
  EXPECT_FALSE(graph.Cancel("f"));
  EXPECT_FALSE(CancelAllAdjustments(graph.functions, graph.roots, graph.recorder.reporter));
  EXPECT_EQ(graph.Log(), Lines());

  graph.Adjust("f", Values(1, kNoDepth, {&graph["g"]}));
  graph.Adjust("x", Values(5));
  EXPECT_EQ(graph.roots.Functions(), (StkFunctionList{&graph["f"], &graph["x"]}));
  graph.Log();
  EXPECT_FALSE(graph.Cancel("x"));
  EXPECT_TRUE(graph.Cancel("f"));
  EXPECT_EQ(graph.Log(), (Lines{"Stack size specification of [x] canceled.",
                                "Stack size specification of f.c#f canceled."}));
  EXPECT_EQ(graph.functions.AdjustedCount(), 0u);
  EXPECT_EQ(graph["f"].totalStackSize, 10u);
  EXPECT_EQ(graph.roots.size(), 3u);

  graph.Adjust("x", Values(5));
  graph.Adjust("f", Values(kNoMargin, kNoDepth, {&graph["g"]}));
  graph.Log();
  EXPECT_TRUE(CancelAllAdjustments(graph.functions, graph.roots, graph.recorder.reporter));
  EXPECT_EQ(graph.Log(), (Lines{"Stack size specification of f.c#f canceled.",
                                "Stack size specification of [x] canceled."}));
  EXPECT_EQ(graph.functions.AdjustedCount(), 0u);
}

// The functions called stay the same, so that the graph is not rebuilt; which one of the recursion
// is entered first does change.
TEST(Adjustments, FollowANewArrangementOfTheSameCallees) {
  Adjusted graph("f 0\na 1 -> b\nb 2 -> a\n");
  EXPECT_TRUE(graph.Adjust("f", Values(kNoMargin, kNoDepth, {&graph["a"], &graph["b"]})));
  EXPECT_EQ(graph["a"].totalStackSize, 3u);
  EXPECT_EQ(graph["b"].totalStackSize, 2u);
  EXPECT_FALSE(graph.Adjust("f", Values(kNoMargin, kNoDepth, {&graph["b"], &graph["a"]})));
  EXPECT_EQ(graph["a"].totalStackSize, 1u);
  EXPECT_EQ(graph["b"].totalStackSize, 3u);
}

TEST(Adjustments, InformationIsCutAtAWholeItem) {
  std::string text = "f 1\n";
  for (int i = 1000; i < 1600; ++i) {
    text += "callee" + std::to_string(i) + " 1\n";
  }
  Adjusted graph(text);
  StkFunctionList callees;
  for (const auto& function : graph.functions.Functions()) {
    callees.push_back(function);
  }
  callees.erase(callees.begin());
  const std::string cut = graph.Information("f", Values(65535, kNoDepth, callees));
  // Items of 20 bytes: the last one that fits makes less than 5070 with the text before it, the
  // name "f" and one byte more.
  const std::string margin = "Additional margin is set to 65535";
  const size_t items = (5070 - 1 - 20 - 1 - margin.size() - 1) / 22 + 1;
  EXPECT_EQ(cut.size(), margin.size() + items * 22 + 5);
  EXPECT_EQ(cut.substr(cut.size() - 27),
            ", callee" + std::to_string(999 + items) + " is added., ...");
  EXPECT_TRUE(graph.Adjust("f", Values(65535, kNoDepth, callees)));
  EXPECT_EQ(graph.Log()[0], "Stack size specification of f adjusted. " + cut + ".");

  const std::string longName = "_" + std::string(6000, 'x');
  graph["callee1000"].name = longName;
  EXPECT_EQ(graph.Information("callee1001", Values(7, kNoDepth, {&graph["f"]})),
            "Additional margin is set to 7, f is added.");
  EXPECT_EQ(AdjustmentInformation(Values(7, 2, {&graph["f"]}), *callees[0], InformationMode::kNew,
                                  graph.recorder.messages)
                .text,
            "Additional margin is set to 7, Recursion depth is set to 2, ...");
}

TEST(Adjustments, WarnAboutWhatExceedsTheLimit) {
  Adjusted graph("one 1 -> f\ntwo 1 -> mid\nmid 1 -> f\nfine 1\nf 40000 -> f\n");
  graph.Adjust("f", Values(kNoMargin, 1));
  EXPECT_TRUE(graph.recorder.boxes.boxes.empty());
  graph.Log();
  graph.Adjust("f", Values(kNoMargin, 2));
  const std::string end = ").\nReduce stack size in the maximum call chain.";
  EXPECT_EQ(graph.Log(),
            (Lines{"Stack size specification of f adjusted. Recursion depth is set to 2.",
                   "W9465 Total stack size exceeds 65535 in function (f).\nReduce recursion depth.",
                   "W9466 Total stack size exceeds 65535 in function (one" + end,
                   "W9466 Total stack size exceeds 65535 in function (two" + end}));
  EXPECT_EQ(graph.recorder.boxes.boxes.size(), 3u);
  graph.Adjust("f", Values(30000));
  EXPECT_EQ(graph.Log()[1], "W9466 Total stack size exceeds 65535 in function (f" + end);
}

TEST(Adjustments, DropDepthsWithoutRecursion) {
  Adjusted graph("f 1\nr 1 -> r\n");
  const auto pend = [&] {
    for (const char* name : {"f", "r"}) {
      StkAdjustment adjustment = Values(2, 3);
      adjustment.line = name[0] == 'f' ? 12u : 13u;
      graph.functions.SetPendingAdjustment(graph[name], adjustment);
    }
  };
  for (const SpecificationKind kind :
       {SpecificationKind::kSystemFile, SpecificationKind::kLibraryTable}) {
    TestSource source(kind);
    pend();
    graph.Apply(source);
    EXPECT_EQ(graph.Log(), Lines());
    EXPECT_EQ(graph["f"].adjustment->depth, kNoDepth);
    EXPECT_EQ(graph["f"].adjustment->margin, 2u);
    EXPECT_EQ(graph["r"].adjustment->depth, 3u);
    EXPECT_EQ(graph["r"].totalStackSize, 9u);
  }
  TestSource user(SpecificationKind::kUserFile);
  pend();
  graph.Apply(user);
  EXPECT_EQ(
      graph.Log(),
      (Lines{"W9417 Illegal \"RECTIME=\" for non-recursive function in file (user.txt:line 12).\n"
             "It shall be specified for recursive functions.",
             "Stack size specification of f adjusted. Additional margin is set to 2.",
             "Stack size specification of r adjusted. Additional margin is set to 2, Recursion "
             "depth is set to 3."}));
}

// The answer to each question decides about the next one only; every depth is dropped.
TEST(Adjustments, AskAboutDepthsUntilAnswered) {
  for (const BoxAnswer answer : {BoxAnswer::kRetry, BoxAnswer::kIgnore, BoxAnswer::kAbort}) {
    Adjusted graph("f 1\ng 1\nh 1\n");
    for (const auto& function : graph.functions.Functions()) {
      graph.functions.SetPendingAdjustment(*function, Values(kNoMargin, 3));
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
  graph.functions.SetLibrarySize(graph["lib"], 4);
  const auto lists = [&](std::string_view name) {
    const StkFunction& function = graph[name];
    return std::string(IsSizeUnknown(function) ? "u" : "") + (IsAdjusted(function) ? "a" : "") +
           (IsSystemLibrary(function) ? "l" : "");
  };
  EXPECT_EQ(
      lists("plain") + "," + lists("r") + "," + lists("i") + "," + lists("x") + "," + lists("lib"),
      ",u,u,u,l");
  for (const auto& function : graph.functions.Functions()) {
    graph.Adjust(CName(*function), Values(1));
    EXPECT_EQ(lists(CName(*function)), "a");
  }
}

}  // namespace
}  // namespace velkor
