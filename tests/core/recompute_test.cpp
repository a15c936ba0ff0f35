#include "core/recompute.h"

#include <gtest/gtest.h>
#include <string>

#include "core/detail/maximum_chain.h"
#include "core/function_text.h"
#include "support/computed_graph.h"

namespace velkor {
namespace {

using testing::ComputedGraph;

std::string Names(const StkFunctionList& functions) {
  std::string names;
  for (const StkFunction* function : functions) {
    names += (names.empty() ? "" : " ") + std::string(CName(*function));
  }
  return names;
}

// Of all functions, in table order.
std::string Totals(const ComputedGraph& graph) {
  std::string totals;
  for (const StkFunction* function : graph.functions.Functions()) {
    totals += (totals.empty() ? "" : " ") + TotalSizeText(*function);
  }
  return totals;
}

TEST(Recompute, FiguresOfSmallPrograms) {
  const struct {
    const char* graph;
    const char* totals;
    const char* roots;
    const char* chain;  // the maximum one of the first top-level function
  } cases[] = {
      {"f 10 -> g h\ng 20\nh 5\n", "30 20 5", "f", "f g"},
      {"f 1 -> s\ng 2 -> s\ns 10 -> s\n", "11 12 10", "f g", "f s s"},
      {"a 1 -> b\nb 2 -> a\n", "3 2", "a", "a b a"},
      {"a 1 -> b\nb 2 -> a c\nc 4\nmain 8 -> b\n", "1 6 4 14", "main", "main b c"},
      {"f 65535 -> g\ng 0\n", "65535 0", "f", "f g"},
      {"top 0 -> f\nf 65535 -> g\ng 1\n", "SIZEOVER SIZEOVER 1", "top", "top f g"},
      {"f 4294967295\n", "SIZEOVER", "f", "f"},
      {"f 4 -> x\n? x\n", "4 ?", "f", "f x"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.graph);
    const ComputedGraph graph(each.graph);
    EXPECT_EQ(Totals(graph), each.totals);
    EXPECT_EQ(Names(graph.roots.Functions()), each.roots);
    EXPECT_EQ(Names(MaximumChains(graph.functions).From(*graph.roots.Functions()[0])), each.chain);
    EXPECT_EQ(graph.functions.Overflow(), std::string(each.totals).starts_with("SIZEOVER"));
  }
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
  ComputedGraph graph(text + "a60 1\nb60 1\n");
  EXPECT_EQ(graph["a31"].chainCount, 536870912);
  EXPECT_EQ(graph["a30"].chainCount, 1073741824);
  EXPECT_EQ(graph["a29"].chainCount, 2147483647);
  EXPECT_EQ(graph["top"].chainCount, 2147483647);
  EXPECT_EQ(TotalSizeText(graph["top"]), "61");
}

}  // namespace
}  // namespace velkor
