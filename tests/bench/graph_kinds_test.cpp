#include "bench/generators/graph_kinds.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <vector>

namespace velkor::bench {
namespace {

CallGraph Make(std::string_view name, uint32_t size, uint64_t seed = 1) {
  for (const GraphKind& kind : GraphKinds()) {
    if (kind.name == name) {
      return kind.make(size, seed);
    }
  }
  ADD_FAILURE() << "no such kind: " << name;
  return {};
}

std::vector<uint32_t> CalleesOf(const CallGraph& graph, uint32_t function) {
  return {graph.Callees(function).begin(), graph.Callees(function).end()};
}

std::set<uint32_t> Reachable(const CallGraph& graph, uint32_t start) {
  std::set<uint32_t> reached;
  std::vector<uint32_t> waiting = {start};
  while (!waiting.empty()) {
    const uint32_t function = waiting.back();
    waiting.pop_back();
    for (const uint32_t callee : graph.Callees(function)) {
      if (reached.insert(callee).second) {
        waiting.push_back(callee);
      }
    }
  }
  return reached;
}

TEST(GraphKinds, EveryCalleeIsAFunctionWhateverTheSize) {
  for (const GraphKind& kind : GraphKinds()) {
    for (uint32_t size = 1; size < 40; ++size) {
      const CallGraph graph = kind.make(size, 1);
      for (uint32_t function = 0; function < graph.FunctionCount(); ++function) {
        for (const uint32_t callee : graph.Callees(function)) {
          ASSERT_LT(callee, graph.FunctionCount()) << kind.name << " " << size;
        }
      }
    }
  }
}

TEST(GraphKinds, ALadderHasTwiceTheChainsWithEveryPair) {
  const CallGraph graph = Make("ladder", 60);
  std::vector<uint64_t> chains(graph.FunctionCount(), 0);
  for (uint32_t function = graph.FunctionCount(); function-- > 0;) {
    const std::vector<uint32_t> callees = CalleesOf(graph, function);
    chains[function] = callees.empty() ? 1 : 0;
    for (const uint32_t callee : callees) {
      ASSERT_GT(callee, function) << "no recursion";
      chains[function] += chains[callee];
    }
  }
  EXPECT_EQ(chains[0], uint64_t{1} << 60);
}

TEST(GraphKinds, LayersCallDownwardsAndRingsRound) {
  const CallGraph layered = Make("layered", 400);
  for (uint32_t function = 0; function < layered.FunctionCount(); ++function) {
    for (const uint32_t callee : layered.Callees(function)) {
      EXPECT_EQ(callee / 20, function / 20 + 1);
    }
  }
  EXPECT_EQ(Reachable(Make("ring", 50), 17).size(), 50U);
  const CallGraph rings = Make("chain-of-rings", 50);
  EXPECT_EQ(Reachable(rings, 20).size(), 30U) << "its own ring and those behind it";
  EXPECT_TRUE(Reachable(rings, 20).contains(20));
}

TEST(GraphKinds, OneFunctionMeetsAllOthers) {
  const CallGraph called = Make("called-by-all", 30);
  EXPECT_EQ(called.FunctionCount(), 31U);
  EXPECT_EQ(CalleesOf(called, 30), std::vector<uint32_t>{0});
  const CallGraph calling = Make("calling-all", 30);
  EXPECT_EQ(calling.FunctionCount(), 31U);
  EXPECT_EQ(calling.CallCount(), 30U);
  EXPECT_EQ(calling.Callees(0).size(), 30U);
  const CallGraph complete = Make("complete", 30);
  EXPECT_EQ(complete.CallCount(), 30U * 29U);
}

TEST(GraphKinds, TheSeedDecides) {
  EXPECT_EQ(CalleesOf(Make("random", 1000, 5), 500), CalleesOf(Make("random", 1000, 5), 500));
  EXPECT_NE(CalleesOf(Make("random", 1000, 5), 500), CalleesOf(Make("random", 1000, 6), 500));
}

}  // namespace
}  // namespace velkor::bench
