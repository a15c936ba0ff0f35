#include "core/statement_plan.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <numeric>
#include <random>
#include <set>
#include <string>

#include "core/detail/cycle_cut.h"
#include "support/computed_graph.h"

namespace velkor {
namespace {

using testing::ComputedGraph;
using Random = std::mt19937;

uint32_t Below(Random& random, uint32_t end) {
  return static_cast<uint32_t>(random() % end);
}

bool HasCycle(const CallGraph& graph, const std::set<uint32_t>& without) {
  std::vector<uint32_t> callers(graph.Count(), 0);
  const auto forEach = [&](uint32_t function, auto visit) {
    for (const uint32_t callee : graph.Callees(function)) {
      if (!without.contains(callee)) {
        visit(callee);
      }
    }
  };
  std::vector<uint32_t> free;
  for (uint32_t function = 0; function < graph.Count(); ++function) {
    if (!without.contains(function)) {
      forEach(function, [&](uint32_t callee) { ++callers[callee]; });
    }
  }
  for (uint32_t function = 0; function < graph.Count(); ++function) {
    if (!without.contains(function) && callers[function] == 0) {
      free.push_back(function);
    }
  }
  for (size_t i = 0; i < free.size(); ++i) {
    forEach(free[i], [&](uint32_t callee) {
      if (--callers[callee] == 0) {
        free.push_back(callee);
      }
    });
  }
  return free.size() + without.size() != graph.Count();
}

CallGraph RandomCalls(Random& random, uint32_t count, uint32_t calls) {
  std::vector<std::set<uint32_t>> callees(count);
  for (uint32_t i = 0; i < calls; ++i) {
    callees[Below(random, count)].insert(Below(random, count));
  }
  CallGraph graph;
  for (const std::set<uint32_t>& each : callees) {
    graph.Append(std::vector<uint32_t>(each.begin(), each.end()));
  }
  return graph;
}

std::set<uint32_t> CutOf(const CallGraph& graph, const std::vector<bool>& preferred) {
  const std::vector<uint32_t> cut = FindCycleCut(graph, preferred);
  EXPECT_TRUE(std::ranges::is_sorted(cut));
  return {cut.begin(), cut.end()};
}

// Of all sets that break every cycle the fewest functions, and the most preferred ones in so few.
std::pair<size_t, size_t> BestOf(const CallGraph& graph, const std::vector<bool>& preferred) {
  std::pair<size_t, size_t> best{graph.Count() + 1, 0};
  for (uint32_t bits = 0; bits < 1U << graph.Count(); ++bits) {
    std::set<uint32_t> cut;
    size_t liked = 0;
    for (uint32_t function = 0; function < graph.Count(); ++function) {
      if ((bits >> function & 1) != 0) {
        cut.insert(function);
        liked += preferred[function] ? 1U : 0U;
      }
    }
    const bool better =
        cut.size() < best.first || (cut.size() == best.first && liked > best.second);
    if (better && !HasCycle(graph, cut)) {
      best = {cut.size(), liked};
    }
  }
  return best;
}

TEST(CycleCut, OfFewFunctionsIsTheSmallestAndPrefersWhereTheyAreEntered) {
  Random random(1);
  for (int round = 0; round < 600; ++round) {
    const uint32_t count = 1 + Below(random, 9);
    const CallGraph graph = RandomCalls(random, count, Below(random, 3 * count));
    std::vector<bool> preferred;
    for (uint32_t i = 0; i < count; ++i) {
      preferred.push_back(Below(random, 2) == 0);
    }
    const std::set<uint32_t> cut = CutOf(graph, preferred);
    EXPECT_FALSE(HasCycle(graph, cut));
    const auto liked = static_cast<size_t>(
        std::ranges::count_if(cut, [&](uint32_t function) { return preferred[function]; }));
    EXPECT_EQ(std::pair(cut.size(), liked), BestOf(graph, preferred)) << round;
  }
}

// Three functions through which all rounds lead, among many others.
TEST(CycleCut, OfManyFunctionsFindsTheFewThatMatter) {
  Random random(2);
  for (int round = 0; round < 200; ++round) {
    const uint32_t count = 20 + Below(random, 200);
    CallGraph graph;
    for (uint32_t function = 0; function < count; ++function) {
      std::set<uint32_t> callees{Below(random, 3), std::min(function + 1, count - 1)};
      for (uint32_t i = 0; i < 3; ++i) {
        callees.insert(function + Below(random, count - function));
      }
      callees.erase(function);
      graph.Append(std::vector<uint32_t>(callees.begin(), callees.end()));
    }
    const std::set<uint32_t> cut = CutOf(graph, std::vector<bool>(count, false));
    EXPECT_FALSE(HasCycle(graph, cut));
    EXPECT_LE(cut.size(), 3U);
  }
}

TEST(CycleCut, HoldsNoFunctionInVain) {
  Random random(3);
  for (int round = 0; round < 60; ++round) {
    const uint32_t count = 13 + Below(random, 60);
    const CallGraph graph = RandomCalls(random, count, 2 * count + Below(random, 2 * count));
    std::set<uint32_t> cut = CutOf(graph, std::vector<bool>(count, false));
    EXPECT_FALSE(HasCycle(graph, cut));
    for (const uint32_t function : std::set<uint32_t>(cut)) {
      cut.erase(function);
      EXPECT_TRUE(HasCycle(graph, cut));
      cut.insert(function);
    }
  }
}

TEST(CycleCut, OfVeryManyFunctionsTakesNoStackAndLittleTime) {
  for (const uint32_t count : {50'000U, 80'000U}) {  // contracted, and walked along
    CallGraph ring;
    CallGraph ladder;  // two ways round at every step, and a hub that everything calls
    for (uint32_t function = 0; function < count; ++function) {
      const uint32_t next = (function + 1) % count;
      ring.Append(std::vector<uint32_t>{next});
      ladder.Append(std::vector<uint32_t>{0, next, (function + 2) % count});
    }
    const std::vector<bool> none(count, false);
    EXPECT_EQ(CutOf(ring, none).size(), 1U);
    EXPECT_EQ(CutOf(ladder, none).size(), 2U);
    EXPECT_FALSE(HasCycle(ladder, CutOf(ladder, none)));
  }
  Random random(4);
  const CallGraph graph = RandomCalls(random, 80'000, 320'000);
  EXPECT_FALSE(HasCycle(graph, CutOf(graph, std::vector<bool>(80'000, false))));
}

// A program of few functions with everything that a bound can miss.
std::string RandomProgram(Random& random) {
  const uint32_t count = 2 + Below(random, 9);
  std::string text;
  for (uint32_t i = 0; i < count; ++i) {
    text += "f" + std::to_string(i) + " 4 ->";
    std::set<uint32_t> callees;
    for (uint32_t calls = Below(random, 4); calls > 0; --calls) {
      callees.insert(Below(random, count + 2));
    }
    for (const uint32_t callee : callees) {
      text += " f" + std::to_string(callee);  // two of them are unknown
    }
    text += "\n";
  }
  return text + "leaf 8\n";
}

void MissSomething(Random& random, ComputedGraph& graph) {
  for (StkFunction* function : graph.functions.Functions()) {
    if (function->name == "_leaf" || function->IsUnknown()) {
      continue;
    }
    constexpr uint32_t kFlags[] = {FN_INDIRECT_CALL, FN_HIDDEN_CALL, FN_DYNAMIC_FRAME,
                                   FN_SIZE_UNKNOWN, FN_INDIRECT_CALL | FN_DYNAMIC_FRAME};
    function->flags |= Below(random, 3) == 0 ? kFlags[Below(random, 5)] : 0;
    if (Below(random, 6) == 0) {
      StkAdjustment stated;
      stated.depth = 1 + Below(random, 3);
      graph.functions.SetPendingAdjustment(*function, std::move(stated));
    }
  }
}

// As a line that the user has filled in states it.
void State(const WantedStatement& wanted, ComputedGraph& graph) {
  StkFunction& function = *graph.functions.Functions()[wanted.function];
  StkAdjustment stated;
  stated.depth = function.adjustment != nullptr ? function.adjustment->depth : kNoDepth;
  if (wanted.settles.Has(ReasonKind::kRecursion)) {
    stated.depth = 3;
  }
  if (wanted.settles.Has(ReasonKind::kUnknown) || wanted.settles.Has(ReasonKind::kDynamic)) {
    stated.margin = 10;
  }
  if (wanted.settles.Has(ReasonKind::kIndirect) || wanted.settles.Has(ReasonKind::kHiddenCall)) {
    StkFunctionList callees{&graph["leaf"]};
    stated.SetCallees(callees, graph.codePage);
  }
  graph.functions.SetPendingAdjustment(function, std::move(stated));
}

uint32_t Unbounded(ComputedGraph& graph, StkBounds& bounds) {
  Recompute(graph.functions, graph.roots, true, nullptr, nullptr, graph.recorder.reporter);
  bounds.Update();
  return static_cast<uint32_t>(std::ranges::count_if(
      graph.roots.Functions(),
      [&](const StkFunction* root) { return bounds.State(*root) == BoundState::kUnbounded; }));
}

TEST(StatementPlan, EachStepFreesWhatItSaysAndAllFreeEverything) {
  Random random(4);
  for (int round = 0; round < 1000; ++round) {
    ComputedGraph graph(RandomProgram(random));
    MissSomething(random, graph);
    StkBounds bounds(graph.functions);
    uint32_t unbounded = Unbounded(graph, bounds);
    const StatementPlan plan = PlanStatements(graph.functions, bounds);
    EXPECT_EQ(plan.unbounded, unbounded);
    for (const PlannedStep& step : plan.steps) {
      for (const WantedStatement& statement : step.statements) {
        State(statement, graph);
      }
      unbounded -= step.frees;
      ASSERT_EQ(Unbounded(graph, bounds), unbounded) << round;
    }
    EXPECT_EQ(unbounded, 0U);
  }
}

std::vector<std::string> Steps(const ComputedGraph& graph, const StatementPlan& plan) {
  std::vector<std::string> texts;
  for (const PlannedStep& step : plan.steps) {
    std::string text = std::to_string(step.frees) + ":";
    for (const WantedStatement& statement : step.statements) {
      text += " " + std::string(graph.functions.Functions()[statement.function]->name.substr(1));
    }
    texts.push_back(text);
  }
  return texts;
}

// What is shared by many comes first, and what only one entry still misses after what it shares.
TEST(StatementPlan, WhatFreesTheMostComesFirst) {
  ComputedGraph graph(
      "main 4 -> step send\nstep 4 -> step\nsend 4 -> wait\nisr1 4 -> log\nisr2 4 -> log\n"
      "isr3 4 -> log wait\nleft 4 -> right\nright 4 -> left\nlone 4 -> left\n");
  StkBounds bounds(graph.functions);
  EXPECT_EQ(Unbounded(graph, bounds), 5U);
  const StatementPlan plan = PlanStatements(graph.functions, bounds);
  EXPECT_EQ(Steps(graph, plan),
            (std::vector<std::string>{"2: log", "1: wait", "1: step", "1: left"}));
  EXPECT_EQ(Steps(graph, PlanStatementsFor(graph.functions, bounds, graph["isr3"].index)),
            (std::vector<std::string>{"0: wait", "1: log"}));
  EXPECT_EQ(Steps(graph, PlanStatementsFor(graph.functions, bounds, graph["right"].index)),
            (std::vector<std::string>{"1: left"}));
}

// Very many functions, each with a cause of its own: the effort runs out, the counts hold.
TEST(StatementPlan, OfVeryManyCausesCountsThemAll) {
  std::string text;
  constexpr uint32_t kCount = 3'000;
  for (uint32_t i = 0; i < kCount; ++i) {
    const std::string number = std::to_string(i);
    text +=
        "f" + number + " 4 -> x" + number + (i % 3 == 0 ? "" : " f" + std::to_string(i - i % 3));
    text += "\n";
  }
  ComputedGraph graph(text);
  StkBounds bounds(graph.functions);
  const uint32_t unbounded = Unbounded(graph, bounds);
  for (const uint64_t effort : std::vector<uint64_t>{0, 20'000, 1'000'000}) {
    const StatementPlan plan = PlanStatements(graph.functions, bounds,
                                              {.sets = effort, .kept = effort, .oneByOne = effort});
    EXPECT_EQ(plan.steps.size(), kCount);
    const auto add = [](uint32_t sum, const PlannedStep& step) { return sum + step.frees; };
    EXPECT_EQ(std::accumulate(plan.steps.begin(), plan.steps.end(), 0U, add), unbounded);
  }
}

}  // namespace
}  // namespace velkor
