#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "core/adjustments.h"
#include "core/random_graph.h"
#include "core/test_source.h"
#include "support/recorder.h"

namespace velkor {
namespace {

using testing::RandomGraph;
using testing::Recorder;
using testing::TestSource;

// One of two equal databases. The one that forgets the order of its computation before each step
// computes everything anew; the other one computes what the step can change.
class Database {
 public:
  Database(uint32_t seed, uint32_t maxFunctions, bool alwaysWhole)
      : graph_(seed, maxFunctions), alwaysWhole_(alwaysWhole) {
    Recompute(graph_.table, roots_, true, nullptr, nullptr, recorder_.reporter);
  }

  void Step() {
    if (alwaysWhole_) {
      roots_.ForgetOrder();
    }
    switch (graph_.Below(9)) {
      case 0:
        CancelAllAdjustments(graph_.table, roots_, recorder_.reporter);
        return;
      case 1:
      case 2:
        CancelAdjustment(graph_.table, roots_, graph_.AnyFunction(), recorder_.reporter);
        return;
      case 3:
        return Load();
      case 4:
        return SizeFromLibrary();
      default:
        return Adjust();
    }
  }

  std::string Results() {
    recorder_.queue.Drain();
    std::string text = graph_.table.Overflow() ? "over\n" : "";
    for (const StkFunction* function : graph_.table.Functions()) {
      text += std::to_string(function->flags) + " " + std::to_string(function->totalStackSize) +
              " " + std::to_string(function->maxCalleeSize) + " " +
              std::to_string(function->chainCount) + "\n";
    }
    for (const std::string& line : recorder_.log.lines) {
      text += line + "\n";
    }
    recorder_.log.lines.clear();
    return text;
  }

 private:
  // Mostly such that no callee list changes.
  void Adjust() {
    StkFunction& function = graph_.AnyFunction();
    StkAdjustment adjustment = graph_.AnyAdjustment();
    if (!graph_.OneIn(8)) {
      adjustment.callees = function.extraCallees;
    }
    AdjustFunction(graph_.table, roots_, function, adjustment, recorder_.reporter);
  }

  void Load() {
    for (uint32_t lines = graph_.Below(4); lines > 0; --lines) {
      graph_.table.SetPendingAdjustment(graph_.AnyFunction(), graph_.AnyAdjustment());
    }
    if (graph_.OneIn(4)) {
      graph_.table.DiscardPendingAdjustments();
      graph_.table.SetPendingAdjustment(graph_.AnyFunction(), graph_.AnyAdjustment());
    }
    TestSource source(SpecificationKind::kUserFile);
    Recompute(graph_.table, roots_, graph_.OneIn(6), &source, nullptr, recorder_.reporter);
  }

  void SizeFromLibrary() {
    for (StkFunction* function : graph_.table.Functions()) {
      if (function->IsUnknown() && graph_.OneIn(3)) {
        graph_.table.SetLibrarySize(*function, graph_.Below(100));
      }
    }
    TestSource source(SpecificationKind::kLibraryTable);
    Recompute(graph_.table, roots_, false, &source, nullptr, recorder_.reporter);
  }

  CodePage codePage_ = CodePage::Utf8();
  Recorder recorder_{codePage_};
  RandomGraph graph_;
  StkRootList roots_;
  bool alwaysWhole_;
};

void ExpectEqualHistories(uint32_t seed, uint32_t maxFunctions, int steps) {
  Database updated(seed, maxFunctions, false);
  Database whole(seed, maxFunctions, true);
  for (int step = 0; step < steps; ++step) {
    updated.Step();
    whole.Step();
    ASSERT_EQ(updated.Results(), whole.Results()) << seed << " after step " << step;
  }
}

TEST(RecomputeUpdate, OfSmallGraphsIsTheWholeComputation) {
  for (uint32_t seed = 0; seed < 400 && !::testing::Test::HasFatalFailure(); ++seed) {
    ExpectEqualHistories(seed, 12, 40);
  }
}

// Positions in more than one word of the sweep, long ways up, large recursions.
TEST(RecomputeUpdate, OfLargerGraphsIsTheWholeComputation) {
  for (uint32_t seed = 0; seed < 12 && !::testing::Test::HasFatalFailure(); ++seed) {
    ExpectEqualHistories(1000 + seed, 600, 60);
  }
}

}  // namespace
}  // namespace velkor
