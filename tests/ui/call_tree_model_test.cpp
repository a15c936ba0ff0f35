#include "ui/views/call_tree_model.h"

#include <QAbstractItemModelTester>
#include <ctime>
#include <gtest/gtest.h>

#include "support/computed_graph.h"
#include "ui/views/function_icons.h"
#include "ui/views/name_delegate.h"

namespace velkor::ui {
namespace {

using testing::ComputedGraph;

class CallTree : public ::testing::Test {
 protected:
  void Show(ComputedGraph& graph) {
    model = std::make_unique<CallTreeModel>(
        graph.codePage, KindDescriptions{"0", "1", "2", "3", "4"}, [this] { return busy; });
    model->Fill(graph.roots.Functions());
  }

  // The children of the node with this path of rows, which are made.
  QModelIndex Open(const std::vector<int>& rows) {
    QModelIndex index;
    for (const int row : rows) {
      index = model->index(row, 0, index);
    }
    if (model->canFetchMore(index)) {
      model->fetchMore(index);
    }
    return index;
  }

  // Each node that exists: its text and kind, "+" when it has children, those made in brackets.
  std::string Text(const QModelIndex& parent = {}) {
    std::string text;
    for (int row = 0; row < model->rowCount(parent); ++row) {
      const QModelIndex index = model->index(row, 0, parent);
      text += (row == 0 ? "" : " ") + index.data().toString().toStdString() + ":" +
              index.data(Qt::AccessibleDescriptionRole).toString().toStdString() +
              (model->hasChildren(index) ? "+" : "");
      const std::string below = Text(index);
      text += below.empty() ? "" : "[" + below + "]";
    }
    return text;
  }

  bool busy = false;
  std::unique_ptr<CallTreeModel> model;
};

TEST_F(CallTree, ClosesEveryCycleWhereAFunctionComesAgain) {
  ComputedGraph graph("f 10 -> g h\ng 20 -> f g\nh 30");
  Show(graph);
  // Checks the model's promises while it fetches all there is.
  const QAbstractItemModelTester tester(model.get(),
                                        QAbstractItemModelTester::FailureReportingMode::Fatal);
  EXPECT_EQ(Text(), "f*:0+[g*:2+[f*:0 g*:2] h:0]");
  EXPECT_FALSE(model->RecordOf(Open({0, 0})).repeated);
  EXPECT_TRUE(model->RecordOf(Open({0, 0, 1})).repeated);
}

TEST_F(CallTree, ShowsCalleesThenExtraCalleesWithKindsAndMaximumMarks) {
  ComputedGraph graph(
      "main 110 -> big also f x memcpy => target\nbig 50\nalso 50\nf 20\n? x\n? memcpy\n"
      "target 7\nstatic lone 160");
  graph["main"].flags |= FN_INDIRECT_CALL;
  graph.SetLibrarySize("memcpy", 8);
  Show(graph);
  EXPECT_EQ(Text(), "main&:0+ lone.c#lone:0")
      << "two top-level functions share the largest total; nothing is made below them yet";
  Open({0});
  EXPECT_EQ(Text(), "main&:0+[also:0 big:0 f:4 [memcpy]:1 [x]:3 target:4] lone.c#lone:0");
  const auto center = [](const QIcon& icon) {
    return icon.pixmap(kTreeIconSize).toImage().pixel(8, 8);
  };
  EXPECT_EQ(center(Open({0, 4}).data(Qt::DecorationRole).value<QIcon>()), center(TreeIcon(3)));

  graph.Adjust("target", 100);
  model->RefreshMarks();
  EXPECT_EQ(Text(), "main&:0+[also:4 big:4 f:4 [memcpy]:1 [x]:3 target:0] lone.c#lone:4");
}

TEST_F(CallTree, OrdersEachLevelBySizeAndFindsTheMaximumChain) {
  ComputedGraph graph("a 1\nmain 5 -> b c d\nb 10\nc 30 -> e\nd 30\ne 1\nz 1");
  Show(graph);
  model->SetOrder(TreeOrder::kSize);
  model->SetBehindName(
      [](const StkFunction& function) { return QString::number(function.totalStackSize); });
  model->Fill(graph.roots.Functions());
  Open({0});
  EXPECT_EQ(Text(), "main:0+[c:0+ d:4 b:4] a:4 z:4");
  EXPECT_EQ(Open({0}).data(NameDelegate::kBehindNameRole).toString(), "36");
  EXPECT_EQ(model->RowOf(graph["z"]), 2);
  EXPECT_EQ(model->RowOf(graph["b"]), -1) << "not of the top level";
  EXPECT_EQ(model->MaximumChild(Open({0})), 0);
  EXPECT_EQ(model->ChildOf(Open({0}), graph["b"]), 2);
  EXPECT_EQ(model->MaximumChild(Open({1})), -1) << "nothing below";
}

TEST_F(CallTree, TouchesNoFunctionWhileAJobChangesThem) {
  ComputedGraph graph("main 10 -> a\na 20 -> b\nb 1");
  Show(graph);
  Open({0});
  const std::string before = Text();
  busy = true;
  graph["main"].flags |= FN_INDIRECT_CALL;
  graph["a"].callees = {};
  EXPECT_EQ(Text(), before);
  Open({0, 0});
  EXPECT_EQ(Text(), before);
  busy = false;
  EXPECT_EQ(Text(), "main&:0+[a:0]");
}

// A chain of rings: every function is recursive and nothing repeats before the very end.
TEST_F(CallTree, DeepAndWideTreesCostTheirNodes) {
  constexpr uint32_t kDepth = 100000;
  constexpr uint32_t kWidth = 20000;
  ComputedGraph graph("first 1");
  const StkFileEntry& file = graph.files.Intern("C:\\p\\deep.c");
  ResolvedCalls calls;
  for (uint32_t i = 1; i <= kDepth + kWidth; ++i) {
    StkFunction& next = graph.functions.AddDefined("_f" + std::to_string(i), file);
    next.flags |= i <= kDepth ? FN_GLOBAL | FN_RECURSIVE : 0;
    calls.callees.push_back(i);
    calls.ends.push_back(i);
  }
  std::fill(calls.ends.begin() + kDepth, calls.ends.end(), kDepth + kWidth);
  calls.ends.push_back(kDepth + kWidth);
  graph.functions.SetAllCalls(calls);
  Show(graph);
  CallTreePaths all;
  CallTreePaths::Place place = CallTreePaths::kTop;
  for (const StkFunction* function = &graph["first"]; !function->callees.empty();
       function = function->callees.front()) {
    place = all.Add(place, function->name.substr(1));
    all.MarkExpanded(place);
  }
  const std::clock_t start = std::clock();
  const auto restored = model->Rebuild(graph.roots.Functions(), all);
  ASSERT_EQ(restored.expanded.size(), kDepth + 1);
  EXPECT_EQ(model->rowCount(restored.expanded.back()), kWidth);
  const CallTreePaths again =
      model->Save([](const QModelIndex&) { return true; }, restored.expanded.back());
  EXPECT_EQ(model->Rebuild(graph.roots.Functions(), again).expanded.size(), kDepth + 1);
  model->RefreshMarks();
  model->Clear();
  EXPECT_LT(std::clock() - start, 10 * CLOCKS_PER_SEC) << "quadratic in the depth";
}

}  // namespace
}  // namespace velkor::ui
