#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "core/adjustments.h"
#include "core/function_text.h"
#include "core/literal_model.h"
#include "core/random_graph.h"
#include "core/test_source.h"
#include "support/recorder.h"

namespace velkor {
namespace {

using testing::Indices;
using testing::LiteralModel;
using testing::ModelAdjustment;
using testing::ModelFunction;
using testing::RandomGraph;
using testing::Recorder;
using testing::TestSource;

// Everything a computation leaves behind, as text, so that a difference can be read.
template <typename Function, typename Applied>
std::string Results(const Function& function, uint32_t total, const Applied& applied) {
  std::string text = std::to_string(function.flags) + " " + std::to_string(total) + " " +
                     std::to_string(function.maxCalleeSize) + " " +
                     std::to_string(function.chainCount);
  if (applied) {
    text += " +" + std::to_string(applied->margin) + "*" + std::to_string(applied->depth);
  }
  return text + "\n";
}

std::string Results(const LiteralModel& model) {
  std::string text = model.overflow ? "over\n" : "";
  for (const ModelFunction& function : model.functions) {
    text += Results(function, function.total, function.applied);
  }
  for (const size_t root : model.roots) {
    text += std::to_string(root) + "\n";
  }
  for (const std::string& line : model.log) {
    text += line + "\n";
  }
  return text;
}

std::string Results(const StkFunctionTable& table, const StkRootList& roots, Recorder& recorder) {
  recorder.queue.Drain();
  std::string text = table.Overflow() ? "over\n" : "";
  for (const auto& function : table.Functions()) {
    text += Results(*function, function->totalStackSize, function->adjustment);
  }
  for (const StkFunction* root : roots.Functions()) {
    text += std::to_string(root->index) + "\n";
  }
  for (const std::string& line : recorder.log.lines) {
    text += line + "\n";
  }
  return text;
}

std::optional<SpecificationKind> AnySource(RandomGraph& graph) {
  const std::optional<SpecificationKind> kinds[] = {std::nullopt, SpecificationKind::kUserFile,
                                                    SpecificationKind::kLibraryTable,
                                                    SpecificationKind::kSystemFile};
  return kinds[graph.Below(4)];
}

// One random history of a database, done to the engine and to the model.
class History {
 public:
  History(RandomGraph& graph, Recorder& recorder)
      : graph_(graph), recorder_(recorder), model_(graph.table) {}

  void Recompute(bool rebuild, std::optional<SpecificationKind> kind) {
    TestSource source(kind.value_or(SpecificationKind::kUserFile));
    velkor::Recompute(graph_.table, roots_, rebuild, kind ? &source : nullptr, nullptr,
                      recorder_.reporter);
    model_.Recompute(rebuild, kind);
  }

  void Step() {
    switch (graph_.Below(6)) {
      case 0:
        return Adjust();
      case 1:
        return Cancel();
      case 2:
        EXPECT_EQ(CancelAllAdjustments(graph_.table, roots_, recorder_.reporter),
                  model_.CancelAllAdjustments());
        return;
      case 3:
        return ChangeCalls();
      default:
        return ReadAdjustments();
    }
  }

  void Compare() {
    EXPECT_EQ(Results(graph_.table, roots_, recorder_), Results(model_));
    StkFunction& function = graph_.AnyFunction();
    const StkFunctionList proposed = graph_.AnyFunctions();
    EXPECT_EQ(IsRecursiveWith(graph_.table, function, proposed),
              model_.IsRecursiveWith(function.index, Indices(proposed)));
    const auto adjusted =
        std::count_if(graph_.table.Functions().begin(), graph_.table.Functions().end(),
                      [](const auto& f) { return f->adjustment != nullptr; });
    EXPECT_EQ(graph_.table.AdjustedCount(), adjusted);
  }

 private:
  void Adjust() {
    StkFunction& function = graph_.AnyFunction();
    StkAdjustment adjustment = graph_.AnyAdjustment();
    if (graph_.OneIn(3)) {  // the same callees, perhaps arranged otherwise
      adjustment.callees = function.extraCallees;
      std::reverse(adjustment.callees->begin(), adjustment.callees->end());
    }
    const ModelAdjustment copy(adjustment);
    EXPECT_EQ(AdjustFunction(graph_.table, roots_, function, adjustment, recorder_.reporter),
              model_.AdjustFunction(function.index, copy));
  }

  void Cancel() {
    StkFunction& function = graph_.AnyFunction();
    EXPECT_EQ(CancelAdjustment(graph_.table, roots_, function, recorder_.reporter),
              model_.CancelAdjustment(function.index));
  }

  void ChangeCalls() {
    for (uint32_t changes = 1 + graph_.Below(3); changes > 0; --changes) {
      graph_.ChangeCall();
    }
    for (const auto& function : graph_.table.Functions()) {
      model_.functions[function->index].callees = Indices(function->callees);
      model_.functions[function->index].callers = Indices(function->callers);
    }
    Recompute(true, AnySource(graph_));
  }

  void ReadAdjustments() {
    for (const auto& function : graph_.table.Functions()) {
      if (graph_.OneIn(3)) {
        StkAdjustment adjustment = graph_.AnyAdjustment();
        model_.functions[function->index].pending = ModelAdjustment(adjustment);
        graph_.table.SetPendingAdjustment(*function, std::move(adjustment));
      }
    }
    Recompute(graph_.OneIn(2), AnySource(graph_));
  }

  RandomGraph& graph_;
  Recorder& recorder_;
  StkRootList roots_;
  LiteralModel model_;
};

TEST(RecomputeOracle, AgreesOnRandomHistories) {
  const CodePage codePage = CodePage::Utf8();
  Recorder recorder(codePage);
  for (uint32_t seed = 0; seed < 20000 && !HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    RandomGraph graph(seed, 8);
    recorder.log.lines.clear();
    History history(graph, recorder);
    history.Recompute(graph.OneIn(2), AnySource(graph));
    history.Compare();
    for (uint32_t steps = graph.Below(4); steps > 0; --steps) {
      history.Step();
      history.Compare();
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
        model.Recompute(false, std::nullopt);
        ASSERT_EQ(Results(graph.table, roots, recorder), Results(model)) << count << " " << marks;
        ++graphs;
      }
    } while (std::next_permutation(names.begin(), names.end()));
  }
  EXPECT_EQ(graphs, 4u + 2 * 64 + 6 * 4096);
}

}  // namespace
}  // namespace velkor
