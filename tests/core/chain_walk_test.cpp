#include "core/chain_walk.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

#include "core/chain_count.h"
#include "core/function_text.h"
#include "core/recompute.h"
#include "core/root_list.h"
#include "random_graph.h"
#include "support/recorder.h"

namespace velkor {
namespace {

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

}  // namespace
}  // namespace velkor
