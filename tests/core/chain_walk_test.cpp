#include "core/chain_walk.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

#include "core/chain_count.h"
#include "core/function_text.h"
#include "core/recompute.h"
#include "core/root_list.h"
#include "random_graph.h"
#include "support/graph.h"
#include "support/recorder.h"

namespace velkor {
namespace {

using testing::Graph;
using testing::RandomGraph;
using testing::Recorder;

// Writes every step down, and ends the walk after so many of them.
class Transcript : public ChainVisitor {
 public:
  explicit Transcript(size_t limit = 100000) : limit_(limit) {}

  bool Visit(const StkFunction& function) override {
    text += std::string(CName(function)) + " ";
    return Go();
  }
  bool EndOfChain() override {
    text += "; ";
    ++chains;
    return Go();
  }
  bool Branch(const StkFunction& parent, size_t index, size_t next, size_t all) override {
    text += std::string(CName(parent)) + ":" + std::to_string(index) + "/" + std::to_string(next) +
            "/" + std::to_string(all) + " ";
    return Go();
  }
  bool Leave(const StkFunction& function) override {
    text += "-" + std::string(CName(function)) + " ";
    return Go();
  }

  std::string text;
  uint64_t chains = 0;

 private:
  bool Go() { return ++steps_ < limit_; }

  size_t limit_;
  size_t steps_ = 0;
};

StkFunctionList NextOf(const StkFunction& function, ChainMode mode) {
  StkFunctionList next = function.callees;
  next.insert(next.end(), function.extraCallees.begin(), function.extraCallees.end());
  uint32_t largest = 0;
  for (const StkFunction* callee : next) {
    largest = std::max(largest, callee->totalStackSize);
  }
  if (mode == ChainMode::kMaximum) {
    std::erase_if(next, [&](const StkFunction* c) { return c->totalStackSize != largest; });
  }
  return next;
}

// The walk as one would do it by hand.
bool WalkLiterally(const StkFunction& function, ChainMode mode, StkFunctionList& path,
                   ChainVisitor& visitor) {
  if (!visitor.Visit(function)) {
    return false;
  }
  const StkFunctionList next = NextOf(function, mode);
  if (next.empty() || std::find(path.begin(), path.end(), &function) != path.end()) {
    return visitor.EndOfChain();
  }
  path.push_back(const_cast<StkFunction*>(&function));
  const size_t all = function.callees.size() + function.extraCallees.size();
  for (size_t i = 0; i < next.size(); ++i) {
    if (!visitor.Branch(function, i, next.size(), all) ||
        !WalkLiterally(*next[i], mode, path, visitor)) {
      return false;
    }
  }
  path.pop_back();
  return visitor.Leave(function);
}

TEST(ChainWalk, StepsComeInListOrderAndRecursionEndsAChain) {
  Graph graph(
      "main 4 -> f g h => g\n"
      "f 6\n"
      "g 6\n"
      "h 2 -> h\n");
  for (const char* name : {"f", "g"}) {
    graph[name].totalStackSize = 6;
  }
  graph["h"].totalStackSize = 2;
  Transcript all;
  EXPECT_TRUE(WalkChains(graph["main"], ChainMode::kAll, all));
  EXPECT_EQ(all.text,
            "main main:0/4/4 f ; main:1/4/4 g ; main:2/4/4 h h:0/1/1 h ; -h main:3/4/4 g ; -main ");
  Transcript maximum;
  EXPECT_TRUE(WalkChains(graph["main"], ChainMode::kMaximum, maximum));
  EXPECT_EQ(maximum.text, "main main:0/3/4 f ; main:1/3/4 g ; main:2/3/4 g ; -main ");
  EXPECT_EQ(CountChains(graph["main"], ChainMode::kMaximum), 3);
  graph["h"].totalStackSize = kOverSize;
  Transcript overflow;
  EXPECT_TRUE(WalkChains(graph["main"], ChainMode::kMaximum, overflow));
  EXPECT_EQ(overflow.text, "main main:0/1/4 h h:0/1/1 h ; -h -main ");
}

TEST(ChainWalk, AgreesWithTheWalkByHandWhereverItIsEnded) {
  for (uint32_t seed = 0; seed < 3000; ++seed) {
    RandomGraph graph(seed, 6);
    Recorder recorder(graph.codePage);
    StkRootList roots;
    Recompute(graph.table, roots, true, nullptr, nullptr, recorder.reporter);
    const StkFunction& start = graph.AnyFunction();
    for (const ChainMode mode : {ChainMode::kMaximum, ChainMode::kAll}) {
      const size_t limit = graph.OneIn(2) ? 1 + graph.Below(40) : 20000;
      Transcript fast(limit);
      Transcript slow(limit);
      StkFunctionList path;
      ASSERT_EQ(WalkChains(start, mode, fast), WalkLiterally(start, mode, path, slow)) << seed;
      ASSERT_EQ(fast.text, slow.text) << seed;
      if (limit == 20000 && mode == ChainMode::kMaximum && fast.text.size() < 20000) {
        ASSERT_EQ(static_cast<uint64_t>(CountChains(start, mode)), fast.chains) << seed;
      }
    }
  }
}

TEST(ChainWalk, ManyChainsAreCountedWithoutWalkingThem) {
  const CodePage codePage = CodePage::Utf8();
  StkFileTable files(codePage);
  StkFunctionTable table(codePage);
  constexpr uint32_t kRungs = 60;
  for (uint32_t i = 0; i <= 2 * kRungs; ++i) {
    table.AddDefined("_f" + std::to_string(i), files.Intern("a.c")).flags |= FN_GLOBAL;
  }
  for (uint32_t rung = 0; rung + 1 < kRungs; ++rung) {
    for (uint32_t from = 2 * rung; from < 2 * rung + 2; ++from) {
      for (uint32_t to = 2 * rung + 2; to < 2 * rung + 4; ++to) {
        table.Functions()[from]->callees.push_back(table.Functions()[to]);
      }
    }
  }
  EXPECT_EQ(CountChains(*table.Functions()[0], ChainMode::kMaximum), kMaxChainCount);
  EXPECT_EQ(CountChains(*table.Functions()[2 * kRungs - 22], ChainMode::kMaximum), 1024);
  Transcript stopped(500);
  EXPECT_FALSE(WalkChains(*table.Functions()[0], ChainMode::kMaximum, stopped));
}

TEST(ChainWalk, MutualRecursionEndsTheCountAtItsLimit) {
  const CodePage codePage = CodePage::Utf8();
  StkFileTable files(codePage);
  StkFunctionTable table(codePage);
  for (uint32_t i = 0; i < 40; ++i) {
    table.AddDefined("_f" + std::to_string(i), files.Intern("a.c"));
  }
  for (const auto& caller : table.Functions()) {
    for (const auto& callee : table.Functions()) {
      caller->callees.push_back(callee);
    }
  }
  EXPECT_EQ(CountChains(*table.Functions()[0], ChainMode::kMaximum), kMaxChainCount);
}

}  // namespace
}  // namespace velkor
