#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <numeric>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "core/bounds.h"
#include "core/explanation.h"
#include "core/reason_witnesses.h"
#include "core/recompute.h"
#include "support/recorder.h"

namespace velkor {
namespace {

using testing::Recorder;

// A few functions with what is stated of them, by number.
struct SmallProgram {
  struct Function {
    uint32_t frameSize = 0;
    uint32_t flags = FN_DEFINED | FN_GLOBAL;
    uint32_t margin = kNoMargin;
    uint32_t depth = kNoDepth;
    std::optional<uint32_t> total;  // of it and all below it
    std::vector<uint32_t> callees, extraCallees;

    bool IsAdjusted() const {
      return margin != kNoMargin || depth != kNoDepth || !extraCallees.empty();
    }
    uint64_t OwnSize() const {
      return total ? *total : frameSize + uint64_t{margin == kNoMargin ? 0 : margin};
    }
  };
  std::vector<Function> functions;

  uint32_t Count() const { return static_cast<uint32_t>(functions.size()); }
  std::vector<uint32_t> AllCallees(uint32_t function) const {
    if (functions[function].total) {
      return {};
    }
    std::vector<uint32_t> all = functions[function].callees;
    all.insert(all.end(), functions[function].extraCallees.begin(),
               functions[function].extraCallees.end());
    return all;
  }
  // Whether calls lead from the function to the target, past functions that hold.
  template <typename Passable>
  bool Leads(uint32_t from, uint32_t target, Passable passable) const {
    std::vector<bool> met(Count(), false);
    std::vector<uint32_t> waiting{from};
    while (!waiting.empty()) {
      const uint32_t next = waiting.back();
      waiting.pop_back();
      for (const uint32_t callee : AllCallees(next)) {
        if (callee == target) {
          return true;
        }
        if (!met[callee] && passable(callee)) {
          met[callee] = true;
          waiting.push_back(callee);
        }
      }
    }
    return false;
  }
  bool IsUnlimited(uint32_t function) const {
    const auto statesNone = [this](uint32_t each) { return functions[each].depth == kNoDepth; };
    return statesNone(function) && Leads(function, function, statesNone);
  }
  // Whether it, or anything that it can reach, has a way round that states no depth.
  bool ReachesUnlimited(uint32_t function) const {
    for (uint32_t other = 0; other < Count(); ++other) {
      if (IsUnlimited(other) &&
          (other == function || Leads(function, other, [](uint32_t) { return true; }))) {
        return true;
      }
    }
    return false;
  }
};

// The same program as the engine sees it, entered in the given order.
class Engine {
 public:
  Engine(const SmallProgram& program, const std::vector<uint32_t>& order, Recorder& recorder) {
    for (const uint32_t number : order) {
      const std::string name = "_f" + std::to_string(number);
      const SmallProgram::Function& from = program.functions[number];
      StkFunction& function = (from.flags & FN_DEFINED) != 0
                                  ? table.AddDefined(name, files.Intern("a.c"))
                                  : table.AddUnknown(name);
      function.flags |= from.flags;
      function.frameSize = from.frameSize;
      records_[number] = &function;
    }
    for (const uint32_t number : order) {
      Fill(program.functions[number], *records_[number]);
    }
    SetCalls(program, order);
    StkRootList roots;
    Recompute(table, roots, true, nullptr, nullptr, recorder.reporter);
    bounds.Update();
  }

  const StkFunction& At(uint32_t number) const { return *records_.at(number); }
  uint64_t Known(uint32_t number) const { return bounds.Known(At(number)); }
  ReasonSet Reasons(uint32_t number) const { return bounds.Reasons(At(number)); }

  CodePage codePage = CodePage::Utf8();
  StkFileTable files{codePage};
  StkFunctionTable table{codePage};
  StkBounds bounds{table};

 private:
  void SetCalls(const SmallProgram& program, const std::vector<uint32_t>& order) {
    ResolvedCalls calls;
    for (const uint32_t number : order) {
      for (const uint32_t callee : program.functions[number].callees) {
        calls.callees.push_back(records_[callee]->index);
      }
      calls.ends.push_back(static_cast<uint32_t>(calls.callees.size()));
    }
    table.SetAllCalls(calls);
  }

  void Fill(const SmallProgram::Function& from, StkFunction& function) {
    for (const uint32_t callee : from.extraCallees) {
      function.extraCallees.push_back(records_[callee]);
    }
    if (from.IsAdjusted()) {
      function.adjustment = std::make_unique<StkAppliedAdjustment>();
      *function.adjustment = {from.margin, from.depth};
    }
    if (from.total) {
      table.BringTotal(function, *from.total);
    }
  }

  std::map<uint32_t, StkFunction*> records_;
};

std::vector<uint32_t> InOrder(uint32_t count) {
  std::vector<uint32_t> order(count);
  std::iota(order.begin(), order.end(), 0);
  return order;
}

// The heaviest of all call paths from a function, when a depth is read
//   as activations: the function is active at most so often on the path;
//   as rounds: the first function with a depth that the path meets is the outermost one, and each
//   time that it is entered anew, all that was counted inside it begins again.
class HeaviestPath {
 public:
  HeaviestPath(const SmallProgram& program, bool asRounds)
      : program_(program), asRounds_(asRounds) {}

  uint64_t From(uint32_t function) { return From(function, {}); }

 private:
  struct Active {
    uint32_t function;
    uint32_t times;
    auto operator<=>(const Active&) const = default;
  };
  using Actives = std::vector<Active>;  // those with a depth, outermost first

  // 0 when the statements do not let the function be entered.
  uint64_t From(uint32_t function, Actives active) {
    if (program_.functions[function].depth != kNoDepth && !Enter(function, active)) {
      return 0;
    }
    const auto [known, isNew] = heaviest_.try_emplace({function, active}, 0);
    if (isNew) {
      uint64_t below = 0;
      for (const uint32_t callee : program_.AllCallees(function)) {
        below = std::max(below, From(callee, active));
      }
      known->second = program_.functions[function].OwnSize() + below;
    }
    return known->second;
  }

  bool Enter(uint32_t function, Actives& active) const {
    auto place = std::ranges::find(active, function, &Active::function);
    if (place == active.end()) {
      active.push_back({function, 1});
      if (!asRounds_) {
        std::ranges::sort(active);
      }
      return true;
    }
    if (++place->times > program_.functions[function].depth) {
      return false;
    }
    if (asRounds_) {
      active.erase(place + 1, active.end());
    }
    return true;
  }

  const SmallProgram& program_;
  bool asRounds_;
  std::map<std::pair<uint32_t, Actives>, uint64_t> heaviest_;
};

uint64_t HeaviestOfAllPaths(const SmallProgram& program, uint32_t start) {
  return std::max(HeaviestPath(program, false).From(start),
                  HeaviestPath(program, true).From(start));
}

// Every row is what its parts make, and all rows together are the number.
void ExpectExplained(const Engine& engine, uint32_t number) {
  uint64_t sum = 0;
  for (const ExplanationRow& row :
       Explanations(engine.table, engine.bounds).Of(engine.At(number).index)) {
    const StkFunction& function = *engine.table.Functions()[row.function];
    uint64_t once = ActivationSize(engine.table, function);
    for (const ExplainedCall& call : row.calls) {
      EXPECT_EQ(call.bytes, ActivationSize(engine.table, *engine.table.Functions()[call.function]));
      once += call.bytes;
    }
    EXPECT_EQ(row.bytes, once * row.times);
    EXPECT_EQ(row.group, engine.bounds.GroupOf(function));
    sum += row.bytes;
  }
  EXPECT_EQ(sum, engine.Known(number));
}

// Whoever is blamed has the reason, and can be reached; whatever can be reached is blamed.
void ExpectBlamed(const SmallProgram& program, const Engine& engine, uint32_t number) {
  const ReasonWitnesses witnesses(engine.table, engine.bounds);
  ReasonSet blamed;
  for (const ReasonWitness& reason : witnesses.Of(engine.At(number).index)) {
    blamed.Add(reason.kind);
    const StkFunction& function = *engine.table.Functions()[reason.function];
    EXPECT_TRUE(engine.bounds.OwnReasons(function).Has(reason.kind));
    const uint32_t there = static_cast<uint32_t>(std::stoul(std::string(function.name).substr(2)));
    EXPECT_TRUE(there == number || program.Leads(number, there, [](uint32_t) { return true; }));
  }
  EXPECT_EQ(blamed, engine.Reasons(number));
  for (uint32_t below = 0; below < program.Count(); ++below) {
    if (below == number || program.Leads(number, below, [](uint32_t) { return true; })) {
      blamed.Add(engine.bounds.OwnReasons(engine.At(below)));
    }
  }
  EXPECT_EQ(blamed, engine.Reasons(number));
}

// How far the bounds of the programs looked at are above their heaviest paths.
struct Tightness {
  double sum = 0;
  uint32_t count = 0;
  double Average() const { return sum / count; }
};

void ExpectBoundsHold(const SmallProgram& program, const Engine& engine, Tightness& tightness) {
  for (uint32_t function = 0; function < program.Count(); ++function) {
    EXPECT_EQ(engine.Reasons(function).Has(ReasonKind::kRecursion),
              program.ReachesUnlimited(function));
    ExpectExplained(engine, function);
    ExpectBlamed(program, engine, function);
    if (program.ReachesUnlimited(function)) {
      continue;
    }
    const uint64_t heaviest = HeaviestOfAllPaths(program, function);
    ASSERT_LE(heaviest, engine.Known(function)) << "function " << function;
    tightness.sum +=
        heaviest == 0 ? 1
                      : static_cast<double>(engine.Known(function)) / static_cast<double>(heaviest);
    ++tightness.count;
  }
}

void ExpectSame(const Engine& engine, const Engine& other, uint32_t count) {
  for (uint32_t function = 0; function < count; ++function) {
    ASSERT_EQ(engine.Known(function), other.Known(function)) << "function " << function;
    ASSERT_EQ(engine.Reasons(function), other.Reasons(function)) << "function " << function;
  }
}

class RandomPrograms {
 public:
  explicit RandomPrograms(uint32_t seed) : random_(seed) {}

  uint32_t Below(uint32_t limit) { return static_cast<uint32_t>(random_() % limit); }
  bool OneIn(uint32_t n) { return Below(n) == 0; }

  SmallProgram Next() {
    SmallProgram program;
    program.functions.resize(1 + Below(6));
    uint32_t depths = 0;
    const uint32_t sparseness = 4 + Below(5);
    for (SmallProgram::Function& function : program.functions) {
      if (OneIn(10)) {
        function.flags = 0;
      } else {
        function.frameSize = OneIn(20) ? 65535 : Below(200);
        function.flags |= OneIn(8) ? uint32_t{FN_INDIRECT_CALL} : 0u;
        function.flags |= OneIn(20) ? uint32_t{FN_HIDDEN_CALL} : 0u;
        function.flags |= OneIn(20) ? uint32_t{FN_DYNAMIC_FRAME} : 0u;
        function.flags |= OneIn(20) ? uint32_t{FN_SIZE_UNKNOWN} : 0u;
        AddCallees(program.Count(), sparseness, function);
      }
      if (OneIn(12)) {
        function.total = Below(300);
      }
      function.margin = OneIn(4) ? Below(50) : kNoMargin;
      if (!OneIn(3) && ++depths <= 4) {  // the search meets every order of them
        function.depth = 1 + Below(3);
      }
    }
    return program;
  }

  std::vector<uint32_t> AnyOrder(uint32_t count) {
    std::vector<uint32_t> order = InOrder(count);
    std::ranges::shuffle(order, random_);
    return order;
  }

  // States all that is missing. What a function calls indirectly leads to no new recursion.
  void StateEverything(SmallProgram& program) {
    for (uint32_t number = 0; number < program.Count(); ++number) {
      SmallProgram::Function& function = program.functions[number];
      const uint32_t target = Below(program.Count());
      if ((function.flags & FN_INDIRECT_CALL) != 0 && function.extraCallees.empty() &&
          target != number && !std::ranges::count(function.callees, target) &&
          !program.Leads(target, number, [](uint32_t) { return true; })) {
        function.extraCallees.push_back(target);
      }
      if (function.margin == kNoMargin && function.flags != (FN_DEFINED | FN_GLOBAL)) {
        function.margin = Below(50);
      }
      if (program.IsUnlimited(number)) {
        function.depth = 1 + Below(3);
      }
    }
  }

 private:
  void AddCallees(uint32_t count, uint32_t sparseness, SmallProgram::Function& function) {
    for (uint32_t callee = 0; callee < count; ++callee) {
      if (OneIn(sparseness)) {
        (OneIn(5) ? function.extraCallees : function.callees).push_back(callee);
      }
    }
  }

  std::mt19937 random_;
};

TEST(BoundsOracle, NoPathOfAnyGraphOfUpToThreeFunctionsExceedsTheBound) {
  const CodePage codePage = CodePage::Utf8();
  Recorder recorder(codePage);
  Tightness tightness;
  for (uint32_t count = 1; count <= 3; ++count) {
    for (uint32_t calls = 0; calls < 1u << (count * count) && !HasFailure(); ++calls) {
      for (uint32_t depths = 0; depths < (count == 1 ? 3u : count == 2 ? 9u : 27u); ++depths) {
        SmallProgram program;
        uint32_t rest = depths;
        for (uint32_t i = 0; i < count; ++i) {
          SmallProgram::Function& function = program.functions.emplace_back();
          function.frameSize = 1u << (4 * i);
          function.depth = rest % 3;
          rest /= 3;
          for (uint32_t callee = 0; callee < count; ++callee) {
            if ((calls >> (i * count + callee) & 1) != 0) {
              function.callees.push_back(callee);
            }
          }
        }
        std::vector<uint32_t> order = InOrder(count);
        const Engine first(program, order, recorder);
        ExpectBoundsHold(program, first, tightness);
        while (std::ranges::next_permutation(order).found) {
          ExpectSame(first, Engine(program, order, recorder), count);
        }
        ASSERT_FALSE(HasFailure()) << count << " functions, calls " << calls << ", " << depths;
      }
    }
  }
  EXPECT_GT(tightness.count, 10000u);
}

TEST(BoundsOracle, NoPathOfARandomGraphExceedsTheBound) {
  constexpr uint32_t kPrograms = 20000;
  const CodePage codePage = CodePage::Utf8();
  Recorder recorder(codePage);
  RandomPrograms random(1);
  Tightness tightness;
  for (uint32_t number = 0; number < kPrograms && !HasFailure(); ++number) {
    SmallProgram program = random.Next();
    const Engine engine(program, InOrder(program.Count()), recorder);
    ExpectBoundsHold(program, engine, tightness);
    ExpectSame(engine, Engine(program, random.AnyOrder(program.Count()), recorder),
               program.Count());
    random.StateEverything(program);
    const Engine stated(program, InOrder(program.Count()), recorder);
    for (uint32_t function = 0; function < program.Count(); ++function) {
      EXPECT_LE(engine.Known(function), stated.Known(function)) << "function " << function;
    }
    ASSERT_FALSE(HasFailure()) << "program " << number;
  }
  RecordProperty("boundOverHeaviestPath", std::to_string(tightness.Average()));
  EXPECT_LT(tightness.Average(), 1.1);
}

}  // namespace
}  // namespace velkor
