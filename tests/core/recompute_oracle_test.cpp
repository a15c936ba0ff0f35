#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "core/adjustments.h"
#include "core/bounds.h"
#include "core/function_sorting.h"
#include "core/function_text.h"
#include "core/literal_model.h"
#include "core/recompute.h"
#include "core/test_source.h"
#include "support/recorder.h"

namespace velkor {
namespace {

using testing::LiteralModel;
using testing::ModelFunction;
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

// A database of every kind of function, the same one on every run for the same seed.
class RandomGraph {
 public:
  RandomGraph(uint32_t seed, uint32_t maxFunctions);

  uint32_t Below(uint32_t limit) { return static_cast<uint32_t>(random_() % limit); }
  bool OneIn(uint32_t n) { return Below(n) == 0; }
  StkFunction& AnyFunction() { return *table.Functions()[Below(table.Count())]; }
  // In no particular order, without duplicates.
  StkFunctionList AnyFunctions();
  StkAdjustment AnyAdjustment();
  // Adds or takes away one call.
  void ChangeCall();

  CodePage codePage = CodePage::Utf8();
  StkFileTable files{codePage};
  StkFunctionTable table{codePage};

 private:
  void AddFunction();
  uint32_t AnySize();
  static void Connect(StkFunction& caller, StkFunction& callee);

  std::mt19937 random_;
};

RandomGraph::RandomGraph(uint32_t seed, uint32_t maxFunctions) : random_(seed) {
  const uint32_t count = 1 + Below(maxFunctions);
  for (uint32_t i = 0; i < count; ++i) {
    AddFunction();
  }
  const uint32_t calls = Below(count * 3);
  for (uint32_t i = 0; i < calls; ++i) {
    Connect(AnyFunction(), AnyFunction());
  }
}

void RandomGraph::AddFunction() {
  const std::string name = "_f" + std::to_string(table.Count());
  if (OneIn(5)) {
    StkFunction& function = table.AddUnknown(name);
    if (OneIn(2)) {
      table.SetLibrarySize(function, AnySize());
    }
    return;
  }
  StkFunction& function = table.AddDefined(name, files.Intern("a.c"));
  function.flags |= OneIn(3) ? 0u : uint32_t{FN_GLOBAL};
  function.frameSize = AnySize();
  if (OneIn(6)) {
    function.SetFixedExtra();
  }
  if (OneIn(8)) {
    function.flags |= OneIn(2) ? uint32_t{FN_DYNAMIC_FRAME} : uint32_t{FN_HIDDEN_CALL};
  }
}

uint32_t RandomGraph::AnySize() {
  return OneIn(30) ? 0xFFFFFFFF : OneIn(10) ? 65535 - Below(3) : OneIn(4) ? Below(30000) : Below(9);
}

void RandomGraph::Connect(StkFunction& caller, StkFunction& callee) {
  if (!caller.CallsDirectly(callee)) {
    caller.callees.push_back(&callee);
    callee.callers.push_back(&caller);
  }
}

void RandomGraph::ChangeCall() {
  StkFunction& caller = AnyFunction();
  if (caller.callees.empty() || OneIn(2)) {
    Connect(caller, AnyFunction());
  } else {
    StkFunction& callee = *caller.callees[Below(static_cast<uint32_t>(caller.callees.size()))];
    RemoveFunction(caller.callees, callee);
    RemoveFunction(callee.callers, caller);
  }
}

StkFunctionList RandomGraph::AnyFunctions() {
  StkFunctionList list;
  for (uint32_t wanted = Below(4); wanted > 0; --wanted) {
    StkFunction& function = AnyFunction();
    RemoveFunction(list, function);
    list.push_back(&function);
  }
  return list;
}

StkAdjustment RandomGraph::AnyAdjustment() {
  StkAdjustment adjustment;
  if (OneIn(2)) {
    adjustment.margin = OneIn(8) ? 0xFFFFFFFE - Below(3) : AnySize();
  }
  if (OneIn(2)) {
    adjustment.depth = OneIn(8) ? 0xFFFFFFFF : 1 + Below(5);
  }
  if (OneIn(2)) {
    adjustment.callees = AnyFunctions();
  }
  adjustment.line = 1 + Below(1000);
  return adjustment;
}

std::optional<SpecificationKind> AnySource(RandomGraph& graph) {
  const std::optional<SpecificationKind> kinds[] = {std::nullopt, SpecificationKind::kUserFile,
                                                    SpecificationKind::kLibraryTable,
                                                    SpecificationKind::kSystemFile};
  return kinds[graph.Below(4)];
}

// One random history of a database.
class History {
 public:
  // anew: everything is computed at each step, not only what the step can change.
  History(Recorder& recorder, uint32_t seed, uint32_t maxFunctions, bool anew)
      : recorder_(recorder), graph_(seed, maxFunctions), anew_(anew) {
    recorder_.log.lines.clear();
    Recompute(graph_.OneIn(2), AnySource(graph_));
  }

  void Step() {
    if (anew_) {
      graph_.table.NoteRearrangedCallees();
    }
    switch (graph_.Below(12)) {
      case 0:
        return CancelAll();
      case 1:
      case 2:
        return ChangeCalls();
      case 3:
      case 4:
        return Cancel();
      case 5:
      case 6:
        return ReadAdjustments();
      case 7:
        return ReadLibrarySizes();
      default:
        return Adjust();
    }
  }

  std::string Results() { return velkor::Results(graph_.table, roots_, recorder_) + Bounds(); }

 private:
  void Recompute(bool rebuild, std::optional<SpecificationKind> kind) {
    TestSource source(kind.value_or(SpecificationKind::kUserFile));
    velkor::Recompute(graph_.table, roots_, rebuild, kind ? &source : nullptr, nullptr,
                      recorder_.reporter);
  }

  // What a step can change of them, or all of them anew.
  std::string Bounds() {
    if (anew_) {
      bounds_ = std::make_unique<StkBounds>(graph_.table);
    }
    bounds_->Update();
    std::string text;
    for (const StkFunction* function : graph_.table.Functions()) {
      text += std::to_string(bounds_->Known(*function));
      for (const ReasonKind kind : kReasonKinds) {
        text += bounds_->Reasons(*function).Has(kind) ? '1' : '0';
      }
      text += '\n';
    }
    return text;
  }

  void Adjust() {
    StkFunction& function = graph_.AnyFunction();
    StkAdjustment adjustment = graph_.AnyAdjustment();
    if (!graph_.OneIn(3)) {  // the same callees, perhaps arranged otherwise
      adjustment.callees = function.extraCallees;
      std::reverse(adjustment.callees->begin(), adjustment.callees->end());
    }
    AdjustFunction(graph_.table, roots_, function, adjustment, recorder_.reporter);
  }

  void Cancel() {
    CancelAdjustment(graph_.table, roots_, graph_.AnyFunction(), recorder_.reporter);
  }

  void CancelAll() { CancelAllAdjustments(graph_.table, roots_, recorder_.reporter); }

  void ChangeCalls() {
    for (uint32_t changes = 1 + graph_.Below(3); changes > 0; --changes) {
      graph_.ChangeCall();
    }
    Recompute(true, AnySource(graph_));
  }

  void ReadAdjustments() {
    if (graph_.OneIn(4)) {  // of a file that is given up
      graph_.table.SetPendingAdjustment(graph_.AnyFunction(), graph_.AnyAdjustment());
      graph_.table.DiscardPendingAdjustments();
    }
    for (StkFunction* function : graph_.table.Functions()) {
      if (graph_.OneIn(3)) {
        graph_.table.SetPendingAdjustment(*function, graph_.AnyAdjustment());
      }
    }
    Recompute(graph_.OneIn(2), AnySource(graph_));
  }

  void ReadLibrarySizes() {
    for (StkFunction* function : graph_.table.Functions()) {
      if (function->IsUnknown() && graph_.OneIn(3)) {
        graph_.table.SetLibrarySize(*function, graph_.Below(100));
      }
    }
    Recompute(false, SpecificationKind::kLibraryTable);
  }

  Recorder& recorder_;
  RandomGraph graph_;
  StkRootList roots_;
  std::unique_ptr<StkBounds> bounds_ = std::make_unique<StkBounds>(graph_.table);
  bool anew_;
};

// Positions in more than one word of the sweep, long ways up, large recursions.
TEST(RecomputeOracle, AnUpdateOfALargeGraphIsTheWholeComputation) {
  const CodePage codePage = CodePage::Utf8();
  Recorder ofUpdated(codePage);
  Recorder ofWhole(codePage);
  for (uint32_t seed = 0; seed < 12 && !HasFailure(); ++seed) {
    History updated(ofUpdated, seed, 600, false);
    History whole(ofWhole, seed, 600, true);
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
