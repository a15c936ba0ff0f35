#include "core/recompute.h"

#include <gtest/gtest.h>
#include <string>

#include "core/adjustments.h"
#include "core/completeness.h"
#include "core/function_text.h"
#include "core/maximum_chain.h"
#include "core/test_source.h"
#include "support/graph.h"
#include "support/recorder.h"

namespace velkor {
namespace {

using testing::Graph;
using testing::Recorder;
using testing::TestSource;

// A graph, computed. Adjusting puts values in force without recomputing.
struct Computed : Graph {
  explicit Computed(std::string_view text) : Graph(text) { Compute(true); }

  // Everything: the tests change records themselves.
  void Compute(bool rebuild) {
    roots.ForgetOrder();
    Recompute(functions, roots, rebuild, nullptr, nullptr, recorder.reporter);
  }
  Computed& Adjust(std::string_view name, uint32_t margin, uint32_t depth = kNoDepth) {
    StkFunction& function = (*this)[name];
    function.adjustment = std::make_unique<StkAppliedAdjustment>();
    *function.adjustment = {margin, depth};
    return *this;
  }
  std::string Total(std::string_view name) {
    Compute(false);
    return TotalSizeText((*this)[name]);
  }
  std::string Roots() const {
    std::string names;
    for (const StkFunction* root : roots.Functions()) {
      names += (names.empty() ? "" : " ") + std::string(CName(*root));
    }
    return names;
  }
  std::string Chain(std::string_view start) {
    std::string names;
    for (const StkFunction* function : MaximumChains(functions).From((*this)[start])) {
      names += (names.empty() ? "" : " ") + std::string(CName(*function));
    }
    return names;
  }

  Recorder recorder{codePage};
  StkRootList roots;
};

TEST(Recompute, AddsTheLargestCallee) {
  Computed graph("f 10 -> g h\ng 20\nh 5\n");
  EXPECT_EQ(graph.Total("g"), "20");
  EXPECT_EQ(graph.Total("f"), "30");
  EXPECT_EQ(graph["f"].maxCalleeSize, 20u);
  EXPECT_EQ(graph["f"].chainCount, 2);
  EXPECT_EQ(graph.Roots(), "f");
  EXPECT_EQ(graph.Chain("f"), "f g");
}

TEST(Recompute, LimitsEverySize) {
  Computed atLimit("f 65535 -> g\ng 0\n");
  EXPECT_EQ(atLimit.Total("f"), "65535");
  EXPECT_FALSE(atLimit.functions.Overflow());

  Computed over("top 0 -> f\nf 65535 -> g\ng 1\n");
  EXPECT_EQ(over.Total("f"), "SIZEOVER");
  EXPECT_EQ(over.Total("top"), "SIZEOVER");
  EXPECT_TRUE(over.functions.Overflow());
  over["f"].frameSize = 65534;
  EXPECT_EQ(over.Total("top"), "65535");
  EXPECT_FALSE(over.functions.Overflow());

  Computed large("f 0 -> f\ng 4294967295\n");
  EXPECT_EQ(large.Total("g"), "SIZEOVER");
  EXPECT_EQ(large.Adjust("f", 0xFFFFFFFE, 0xFFFFFFFF).Total("f"), "SIZEOVER");
  EXPECT_EQ(large.Adjust("f", kNoMargin, 0xFFFFFFFF).Total("f"), "0");
  EXPECT_EQ(large.Adjust("f", 1, 0xFFFFFFFF).Total("f"), "SIZEOVER");
  EXPECT_EQ(large.Adjust("f", 1, 65535).Total("f"), "65535");
  EXPECT_EQ(large.Adjust("f", 65535, 65538).Total("f"), "SIZEOVER");
}

TEST(Recompute, UsesMarginAndDepth) {
  Computed plain("f 10\n");
  EXPECT_EQ(plain.Adjust("f", 6).Total("f"), "16");
  EXPECT_EQ(plain.Adjust("f", kNoMargin).Total("f"), "10");
  EXPECT_EQ(plain.Adjust("f", kNoMargin, 3).Total("f"), "10");  // not recursive

  Computed recursive("f 10 -> f\n");
  EXPECT_EQ(recursive.Total("f"), "10");
  EXPECT_EQ(recursive["f"].chainCount, 1);
  EXPECT_EQ(recursive.Adjust("f", 2, 3).Total("f"), "36");
  recursive["f"].frameSize = 21844;
  EXPECT_EQ(recursive.Total("f"), "SIZEOVER");
  recursive["f"].frameSize = 21843;
  EXPECT_EQ(recursive.Total("f"), "65535");
}

TEST(Recompute, AddsTheLibrarySizeWhereNothingIsAdjusted) {
  Computed graph("f 4 -> lib\ng 4\n? lib\n? other\n");
  EXPECT_EQ(graph.Total("other"), "?");
  graph.functions.SetLibrarySize(graph["lib"], 8);
  EXPECT_EQ(graph.Total("lib"), "8");
  EXPECT_EQ(graph.Total("f"), "12");
  EXPECT_EQ(graph.Adjust("lib", 4).Total("lib"), "4");
  graph["g"].SetFixedExtra();
  EXPECT_EQ(graph.Total("g"), "10");
  EXPECT_EQ(graph.Adjust("g", kNoMargin).Total("g"), "4");
}

TEST(Recompute, FindsTheWayIntoRecursion) {
  Computed cycle("a 1 -> b\nb 2 -> a\n");
  EXPECT_EQ(cycle.Roots(), "a");
  EXPECT_EQ(cycle.Total("b"), "2");
  EXPECT_EQ(cycle.Total("a"), "3");
  EXPECT_EQ(cycle.Chain("a"), "a b a");
  EXPECT_EQ(cycle.Adjust("a", kNoMargin, 5).Total("a"), "15");

  Computed entered("a 1 -> b\nb 2 -> a c\nc 4\nmain 8 -> b\n");
  EXPECT_EQ(entered.Roots(), "main");
  EXPECT_EQ(entered.Total("a"), "1");
  EXPECT_EQ(entered.Total("b"), "6");
  EXPECT_EQ(entered["a"].chainCount, 1);
  EXPECT_EQ(entered["b"].chainCount, 2);
  EXPECT_EQ(FunctionDisplayName(entered["b"], entered.codePage), "b*");
}

TEST(Recompute, SharesACalleeBetweenTopLevelFunctions) {
  Computed graph("f 1 -> s\ng 2 -> s\ns 10 -> s\n");
  EXPECT_EQ(graph.Roots(), "f g");
  EXPECT_EQ(graph.Total("f"), "11");
  EXPECT_EQ(graph.Total("g"), "12");
}

// 60 steps of two functions that each call both of the next step.
TEST(Recompute, HoldsAChainCountAtItsLimit) {
  std::string text = "top 0 -> a0 b0\n";
  for (int step = 0; step < 60; ++step) {
    const std::string next = std::to_string(step + 1);
    for (const char* side : {"a", "b"}) {
      text += side + std::to_string(step) + " 1 -> a" + next + " b" + next + "\n";
    }
  }
  Computed graph(text + "a60 1\nb60 1\n");
  EXPECT_EQ(graph["a31"].chainCount, 536870912);
  EXPECT_EQ(graph["a30"].chainCount, 1073741824);
  EXPECT_EQ(graph["a29"].chainCount, 2147483647);
  EXPECT_EQ(graph["top"].chainCount, 2147483647);
  EXPECT_EQ(graph.Total("top"), "61");
}

TEST(Recompute, AppliesPendingCalleesOnlyWhenItRebuilds) {
  Computed graph("f 1\ng 10\n");
  StkAdjustment adjustment;
  adjustment.callees = StkFunctionList{&graph["g"]};
  graph.functions.SetPendingAdjustment(graph["f"], adjustment);
  graph.Compute(false);
  EXPECT_EQ(graph.Total("f"), "1");
  EXPECT_EQ(graph.Roots(), "f g");
  graph.functions.SetPendingAdjustment(graph["f"], adjustment);
  graph.Compute(true);
  EXPECT_EQ(graph.Total("f"), "11");
  EXPECT_EQ(graph.Roots(), "f");
  graph.functions.SetPendingAdjustment(graph["f"], StkAdjustment());
  graph.Compute(true);
  EXPECT_EQ(graph.Total("f"), "1");
  EXPECT_EQ(graph.Roots(), "f g");
  EXPECT_EQ(graph.functions.AdjustedCount(), 1u);
}

TEST(Completeness, CarriesDoubtUpToEveryCaller) {
  Computed graph(
      "top 1 -> mid sure\nmid 1 -> low\nlow 1 -> x\nsure 1 -> lib\nr 1 -> r\n"
      "i 1\nh 1 => i\n? x\n? lib\n");
  graph.functions.SetLibrarySize(graph["lib"], 4);
  graph["i"].flags |= FN_INDIRECT_CALL;
  const auto complete = [&] {
    graph.Compute(true);
    std::string names;
    const std::vector<bool> certain = CompleteFunctions(graph.functions);
    for (const auto& function : graph.functions.Functions()) {
      names += certain[function->index] ? std::string(CName(*function)) + " " : "";
    }
    return names;
  };
  EXPECT_EQ(complete(), "sure lib ");
  graph.Adjust("x", 20).Adjust("r", kNoMargin, 2).Adjust("i", kNoMargin);
  EXPECT_EQ(complete(), "top mid low sure r i h x lib ");
}

}  // namespace
}  // namespace velkor
