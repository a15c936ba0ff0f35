#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "core/bounds.h"
#include "core/graph_history.h"
#include "core/literal_model.h"
#include "core/recompute.h"
#include "support/recorder.h"

namespace velkor {
namespace {

using testing::FuzzInput;
using testing::GraphHistory;
using testing::LiteralModel;
using testing::Recorder;

// One history of a large graph.
class History {
 public:
  // anew: everything is computed at each step, not only what the step can change.
  History(const std::string& bytes, bool anew) : input_(bytes), anew_(anew) {
    history_.Step(GraphHistory::kCompute);
  }

  void Step() {
    if (anew_) {
      history_.table.NoteRearrangedCallees();
    }
    const uint32_t kind = input_.Below(2 * GraphHistory::kKinds);
    history_.Step(kind < GraphHistory::kKinds ? GraphHistory::Kind{kind} : GraphHistory::kAdjust);
  }

  std::string Results() {
    recorder_.queue.Drain();
    std::string text = testing::Results(history_.table, history_.roots) + Bounds();
    for (const std::string& line : recorder_.log.lines) {
      text += line + "\n";
    }
    return text;
  }

 private:
  // What a step can change of them, or all of them anew.
  std::string Bounds() {
    if (anew_) {
      bounds_ = std::make_unique<StkBounds>(history_.table);
    }
    bounds_->Update();
    std::string text;
    for (const StkFunction* function : history_.table.Functions()) {
      text += std::to_string(bounds_->Known(*function));
      for (const ReasonKind kind : kReasonKinds) {
        text += bounds_->Reasons(*function).Has(kind) ? '1' : '0';
      }
      text += '\n';
    }
    return text;
  }

  FuzzInput input_;
  CodePage codePage_ = CodePage::Utf8();
  Recorder recorder_{codePage_};
  GraphHistory history_{input_, codePage_, 600, recorder_.reporter};
  std::unique_ptr<StkBounds> bounds_ = std::make_unique<StkBounds>(history_.table);
  bool anew_;
};

// Positions in more than one word of the sweep, long ways up, large recursions.
TEST(RecomputeOracle, AnUpdateOfALargeGraphIsTheWholeComputation) {
  for (uint32_t seed = 0; seed < 12 && !HasFailure(); ++seed) {
    std::mt19937 random(seed);
    std::string bytes(100000, '\0');
    std::generate(bytes.begin(), bytes.end(), [&random] { return static_cast<char>(random()); });
    History updated(bytes, false);
    History whole(bytes, true);
    for (int step = 0; step < 60; ++step) {
      updated.Step();
      whole.Step();
      ASSERT_EQ(updated.Results(), whole.Results()) << seed << " after step " << step;
    }
  }
}

// The functions of one small graph, each with a frame size of its own. Names run in another order
// than the table where the permutation says so, which arranges the callee lists.
struct SmallGraph {
  SmallGraph(const std::vector<uint32_t>& names, uint32_t calls, uint32_t oldRoots) {
    const uint32_t count = static_cast<uint32_t>(names.size());
    for (uint32_t i = 0; i < count; ++i) {
      StkFunction& function = table.AddDefined("_f" + std::to_string(names[i]), files.Intern("a"));
      function.frameSize = 1u << (4 * i);
      function.flags |= (oldRoots >> i & 1) != 0 ? uint32_t{FN_ROOT} : 0u;
      function.adjustment = std::make_unique<StkAppliedAdjustment>();
      function.adjustment->depth = i + 1;
      for (uint32_t callee = 0; callee < count; ++callee) {
        if ((calls >> (i * count + callee) & 1) != 0) {
          table.AddCallName(function, "_f" + std::to_string(names[callee]));
        }
      }
    }
    table.ResolveAllCalls();
  }

  CodePage codePage = CodePage::Utf8();
  StkFileTable files{codePage};
  StkFunctionTable table{codePage};
};

TEST(RecomputeOracle, AgreesOnEveryGraphOfUpToThreeFunctions) {
  const CodePage codePage = CodePage::Utf8();
  Recorder recorder(codePage);
  uint32_t graphs = 0;
  for (uint32_t count = 1; count <= 3; ++count) {
    std::vector<uint32_t> names = {0, 1, 2};
    names.resize(count);
    do {
      for (uint32_t marks = 0; marks < 1u << (count * count + count) && !HasFailure(); ++marks) {
        SmallGraph graph(names, marks >> count, marks);
        LiteralModel model(graph.table);
        StkRootList roots;
        Recompute(graph.table, roots, false, nullptr, nullptr, recorder.reporter);
        model.Recompute(false);
        ASSERT_EQ(testing::Results(graph.table, roots), model.Results()) << count << " " << marks;
        ++graphs;
      }
    } while (std::next_permutation(names.begin(), names.end()));
  }
  EXPECT_EQ(graphs, 4u + 2 * 64 + 6 * 4096);
}

}  // namespace
}  // namespace velkor
