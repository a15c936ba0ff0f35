#include <gtest/gtest.h>
#include <string>

#include "core/adjustments.h"
#include "core/bounds.h"
#include "core/chain_count.h"
#include "core/detail/maximum_chain.h"
#include "core/detail/report_overflow.h"
#include "core/explanation.h"
#include "core/recompute.h"
#include "support/computed_graph.h"

namespace velkor {
namespace {

using testing::ComputedGraph;

constexpr uint32_t kDeep = 200000;

// Functions that each call the next one, and the last one what is stated.
std::string DeepGraph(const std::string& calledByLast) {
  std::string text;
  for (uint32_t i = 0; i + 1 < kDeep; ++i) {
    text += "f" + std::to_string(i) + " 0 -> f" + std::to_string(i + 1) + "\n";
  }
  return text + "f" + std::to_string(kDeep - 1) + " 0 -> " + calledByLast + "\n";
}

TEST(DeepGraph, ChainNeedsNoStackOfItsOwn) {
  ComputedGraph graph(DeepGraph(""));
  EXPECT_EQ(graph.roots.size(), 1u);
  StkAdjustment margin;
  margin.margin = 65536;
  StkFunction& first = *graph.functions.Functions()[0];
  StkFunction& last = *graph.functions.Functions()[kDeep - 1];
  EXPECT_FALSE(AdjustFunction(graph.functions, graph.roots, last, margin, graph.recorder.reporter));
  EXPECT_EQ(first.totalStackSize, kOverSize);
  EXPECT_EQ(graph.recorder.boxes.boxes.size(), 2u);  // the last function and the first
  EXPECT_TRUE(IsRecursiveWith(graph.functions, last, {&first}));
  EXPECT_FALSE(IsRecursiveWith(graph.functions, first, {&last}));
  EXPECT_EQ(MaximumChains(graph.functions).From(first).size(), kDeep);
  StkBounds bounds(graph.functions);
  bounds.Update();
  EXPECT_EQ(bounds.State(first), BoundState::kOver);
  EXPECT_EQ(bounds.Known(first), 65536u);
  EXPECT_EQ(Explanations(graph.functions, bounds).Of(first.index).size(), kDeep);
}

TEST(DeepGraph, RingNeedsNoStackOfItsOwn) {
  ComputedGraph graph(DeepGraph("f0"));
  StkFunction& first = *graph.functions.Functions()[0];
  EXPECT_EQ(graph.roots.Functions(), StkFunctionList{&first});
  EXPECT_TRUE(graph.functions.Functions()[kDeep / 2]->Is(FN_RECURSIVE));
  EXPECT_EQ(first.chainCount, 1);
  ReportOverflow(graph.functions, *graph.functions.Functions()[1], "f1", graph.recorder.reporter);
  StkAdjustment settled;
  settled.depth = 2;
  AdjustFunction(graph.functions, graph.roots, first, settled, graph.recorder.reporter);
  StkBounds bounds(graph.functions);
  bounds.Update();
  EXPECT_EQ(bounds.State(first), BoundState::kBounded);
  settled.depth = 0xFFFFFFFF;
  settled.margin = 65535;
  AdjustFunction(graph.functions, graph.roots, first, settled, graph.recorder.reporter);
  bounds.Update();
  EXPECT_EQ(bounds.Known(first), uint64_t{0xFFFFFFFF} * 65535);
  for (uint32_t i = 1; i < kDeep; i += 2) {  // so does every second one of the ring
    StkFunction& function = *graph.functions.Functions()[i];
    graph.functions.PutInForce(function, {65535, 0xFFFFFFFF});
  }
  Recompute(graph.functions, graph.roots, false, nullptr, nullptr, graph.recorder.reporter);
  bounds.Update();
  EXPECT_EQ(bounds.Known(first), kMaxBound);
  EXPECT_EQ(bounds.State(first), BoundState::kOver);
  EXPECT_EQ(bounds.Groups().front().counted.size(), kDeep / 2 + size_t{1});
  EXPECT_EQ(Explanations(graph.functions, bounds).Of(first.index).front().bytes, kMaxBound);
  EXPECT_EQ(MaximumChains(graph.functions).From(first).size(), kDeep + size_t{1});
}

TEST(DeepGraph, EveryFunctionCallsEveryOther) {
  constexpr int kMutual = 300;
  std::string all;
  for (int i = 0; i < kMutual; ++i) {
    all += " f" + std::to_string(i);
  }
  std::string text;
  for (int i = 0; i < kMutual; ++i) {
    text += "f" + std::to_string(i) + " 0 ->" + all + "\n";
  }
  ComputedGraph graph(text + "g 0\n");
  EXPECT_EQ(graph.roots.Functions(), (StkFunctionList{&graph["f0"], &graph["g"]}));
  EXPECT_EQ(graph["f0"].chainCount, kMaxChainCount);
  EXPECT_EQ(CountChains(graph["f0"], ChainMode::kMaximum), kMaxChainCount);
  EXPECT_FALSE(IsRecursiveWith(graph.functions, graph["g"], {&graph["f7"]}));
}

}  // namespace
}  // namespace velkor
