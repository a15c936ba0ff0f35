#include <algorithm>
#include <gtest/gtest.h>
#include <random>

#include "support/computed_graph.h"
#include "ui/navigation/caller_index.h"
#include "ui/navigation/shortest_ways.h"
#include "ui/navigation/way_history.h"

namespace velkor::ui {
namespace {

using testing::ComputedGraph;

// Enough functions and calls for several steps: f1 to f3000, each called by up to four before it,
// some back.
std::string LargeGraph(std::mt19937& random) {
  std::string text;
  for (int i = 1; i <= 3000; ++i) {
    text += "f" + std::to_string(i) + " 1 ->";
    for (int call = 0; call < 4; ++call) {
      text += " f" + std::to_string(std::min<size_t>(3000, 1 + random() % (2 * size_t(i))));
    }
    text += "\n";
  }
  return text;
}

TEST(CallWays, CallersAndShortestWaysAreThoseOfTheCalls) {
  std::mt19937 random(7);
  ComputedGraph graph(LargeGraph(random));
  CallerIndex callers(graph.functions);
  ShortestWays ways(graph.functions, graph.roots.Functions());
  int steps = 0;
  while (callers.Step()) {
    ++steps;
  }
  EXPECT_GT(steps, 4) << "else the window would wait";
  while (ways.Step()) {
  }
  for (const StkFunction* function : graph.functions.Functions()) {
    const auto expected = graph.functions.Callers(function->index);
    const auto found = callers.Of(*function);
    EXPECT_TRUE(std::equal(found.begin(), found.end(), expected.begin(), expected.end()));
    const StkFunctionList way = ways.To(*function);
    ASSERT_FALSE(way.empty());
    EXPECT_TRUE(way.front()->Is(FN_ROOT));
    EXPECT_EQ(way.back(), function);
    for (size_t i = 1; i < way.size(); ++i) {
      EXPECT_TRUE(way[i - 1]->CallsDirectly(*way[i]));
    }
    for (const uint32_t caller : found) {
      EXPECT_LE(way.size(), ways.To(*graph.functions.Functions()[caller]).size() + 1);
    }
  }
}

TEST(CallWays, AStatedCalleeIsACall) {
  ComputedGraph graph("main 1 -> a => aim\na 1 -> aim\naim 1\n");
  CallerIndex callers(graph.functions);
  while (callers.Step()) {
  }
  const auto found = callers.Of(graph["aim"]);
  EXPECT_EQ(std::vector<uint32_t>(found.begin(), found.end()),
            (std::vector<uint32_t>{graph["main"].index, graph["a"].index}));
  EXPECT_TRUE(callers.Of(graph["main"]).empty());
}

TEST(CallWays, TheHistoryKeepsWhereTheUserWas) {
  WayHistory history;
  history.Jump({1}, {2});
  history.Jump({3}, {4});  // the user has gone on by hand in between
  EXPECT_EQ(history.GoBack({5}), WayHistory::Way{3});
  EXPECT_EQ(history.GoBack({3}), WayHistory::Way{1});
  EXPECT_FALSE(history.CanGoBack());
  EXPECT_EQ(history.GoForward({1}), WayHistory::Way{3});
  EXPECT_EQ(history.GoForward({3}), WayHistory::Way{5});
  EXPECT_FALSE(history.CanGoForward());
  history.GoBack({5});
  history.Jump({3}, {6});
  EXPECT_FALSE(history.CanGoForward()) << "what was forward is gone";
  for (uint32_t i = 0; i < 1000; ++i) {
    history.Jump({6 + i}, {7 + i});
  }
  int back = 0;
  for (; history.CanGoBack(); ++back) {
    history.GoBack({0});
  }
  EXPECT_EQ(back, 99);
}

}  // namespace
}  // namespace velkor::ui
