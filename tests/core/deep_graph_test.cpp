#include <gtest/gtest.h>
#include <string>

#include "core/adjustments.h"
#include "core/completeness.h"
#include "core/maximum_chain.h"
#include "support/recorder.h"

namespace velkor {
namespace {

using testing::Recorder;

// Functions that each call the next ones around a ring of them all, or along a chain.
struct LargeGraph {
  LargeGraph(uint32_t count, uint32_t callsEach, bool ring) {
    for (uint32_t i = 0; i < count; ++i) {
      table.AddDefined("_f" + std::to_string(i), files.Intern("a.c")).flags |= FN_GLOBAL;
    }
    for (uint32_t i = 0; i < count; ++i) {
      StkFunction& caller = At(i);
      for (uint32_t step = 1; step <= callsEach && (ring || i + step < count); ++step) {
        caller.callees.push_back(&At((i + step) % count));
        caller.callees.back()->callers.push_back(&caller);
      }
    }
    Recompute(table, roots, true, nullptr, nullptr, recorder.reporter);
  }

  StkFunction& At(size_t index) { return *table.Functions()[index]; }

  CodePage codePage = CodePage::Utf8();
  Recorder recorder{codePage};
  StkFileTable files{codePage};
  StkFunctionTable table{codePage};
  StkRootList roots;
};

constexpr uint32_t kDeep = 200000;

TEST(DeepGraph, ChainNeedsNoStackOfItsOwn) {
  LargeGraph graph(kDeep, 1, false);
  EXPECT_EQ(graph.roots.size(), 1u);
  StkAdjustment margin;
  margin.margin = 65536;
  StkFunction& last = graph.At(kDeep - 1);
  EXPECT_FALSE(AdjustFunction(graph.table, graph.roots, last, margin, graph.recorder.reporter));
  EXPECT_EQ(graph.At(0).totalStackSize, kOverSize);
  EXPECT_EQ(graph.recorder.boxes.boxes.size(), 2u);  // the last function and the first
  EXPECT_TRUE(IsRecursiveWith(graph.table, last, {&graph.At(0)}));
  EXPECT_FALSE(IsRecursiveWith(graph.table, graph.At(0), {&last}));
  EXPECT_EQ(MaximumChains(graph.table).From(graph.At(0)).size(), kDeep);
}

TEST(DeepGraph, RingNeedsNoStackOfItsOwn) {
  LargeGraph graph(kDeep, 1, true);
  EXPECT_EQ(graph.roots.Functions(), StkFunctionList{&graph.At(0)});
  EXPECT_TRUE(graph.At(kDeep / 2).Is(FN_RECURSIVE));
  EXPECT_EQ(graph.At(0).chainCount, 1);
  ReportOverflow(graph.table, graph.At(1), "f1", graph.recorder.reporter);
  StkAdjustment settled;
  settled.depth = 2;
  AdjustFunction(graph.table, graph.roots, graph.At(0), settled, graph.recorder.reporter);
  EXPECT_FALSE(CompleteFunctions(graph.table)[0]);
  EXPECT_EQ(MaximumChains(graph.table).From(graph.At(0)).size(), kDeep + size_t{1});
}

TEST(DeepGraph, EveryFunctionCallsEveryOther) {
  constexpr uint32_t kMutual = 300;
  LargeGraph graph(kMutual, kMutual - 1, true);
  EXPECT_EQ(graph.roots.Functions(), StkFunctionList{&graph.At(0)});
  EXPECT_EQ(graph.At(0).chainCount, kMaxChainCount);
  EXPECT_FALSE(IsRecursiveWith(graph.table, graph.table.AddDefined("_g", graph.files.Intern("b")),
                               {&graph.At(7)}));
}

}  // namespace
}  // namespace velkor
