#include "ui/views/call_tree_model.h"

#include <QAbstractItemModelTester>
#include <ctime>
#include <gtest/gtest.h>
#include <set>

#include "support/computed_graph.h"
#include "ui/views/function_icons.h"

namespace velkor::ui {
namespace {

using testing::ComputedGraph;

class CallTree : public ::testing::Test {
 protected:
  void Show(ComputedGraph& graph) {
    model = std::make_unique<CallTreeModel>(graph.codePage, KindDescriptions(),
                                            [this] { return busy; });
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

  // A line for each node that exists: indentation, text, icon index, "+" when it has children.
  std::string Text(const QModelIndex& parent = {}, size_t depth = 0) {
    std::string text;
    for (int row = 0; row < model->rowCount(parent); ++row) {
      const QModelIndex index = model->index(row, 0, parent);
      text += std::string(depth * 2, ' ') + index.data().toString().toStdString() + " " +
              std::to_string(Icon(index)) + (model->hasChildren(index) ? "+\n" : "\n");
      text += Text(index, depth + 1);
    }
    return text;
  }

  int Icon(const QModelIndex& index) {
    const QImage image = index.data(Qt::DecorationRole).value<QIcon>().pixmap(16, 16).toImage();
    const QRgb center = image.pixel(8, 8);
    int kind = 0;
    while (kind < 5 && TreeIcon(kind).pixmap(16, 16).toImage().pixel(8, 8) != center) {
      ++kind;
    }
    return kind;
  }

  std::string Rebuilt(ComputedGraph& graph, const std::set<std::string>& expandedNames,
                      const QModelIndex& selected) {
    const CallTreePaths saved = model->Save(
        [&](const QModelIndex& index) {
          return expandedNames.contains(index.data().toString().toStdString());
        },
        selected);
    const CallTreeModel::Restored restored = model->Rebuild(graph.roots.Functions(), saved);
    restoredSelection = restored.selected.data().toString().toStdString();
    return Text();
  }

  bool busy = false;
  std::unique_ptr<CallTreeModel> model;
  std::string restoredSelection;
};

TEST_F(CallTree, ClosesEveryCycleWhereAFunctionComesAgain) {
  ComputedGraph graph("f 10 -> g h\ng 20 -> f g\nh 30");
  Show(graph);
  // Checks the model's promises while it fetches all there is.
  const QAbstractItemModelTester tester(model.get(),
                                        QAbstractItemModelTester::FailureReportingMode::Fatal);
  EXPECT_EQ(Text(),
            "f* 0+\n"
            "  g* 2+\n"
            "    f* 0\n"
            "    g* 2\n"
            "  h 0\n");
  EXPECT_FALSE(model->RecordOf(Open({0, 0})).repeated);
  EXPECT_TRUE(model->RecordOf(Open({0, 0, 1})).repeated);
}

TEST_F(CallTree, ShowsCalleesThenExtraCalleesWithKindsAndMaximumMarks) {
  ComputedGraph graph(
      "main 110 -> big also f x memcpy => target\n"
      "big 50\n"
      "also 50\n"
      "f 20\n"
      "? x\n"
      "? memcpy\n"
      "target 7\n"
      "static lone 160");
  graph["main"].flags |= FN_INDIRECT_CALL;
  graph.SetLibrarySize("memcpy", 8);
  Show(graph);
  EXPECT_EQ(Text(),
            "main& 0+\n"
            "lone.c#lone 0\n")
      << "two top-level functions share the largest total; nothing is made below them yet";
  Open({0});
  EXPECT_EQ(Text(),
            "main& 0+\n"
            "  also 0\n"
            "  big 0\n"
            "  f 4\n"
            "  [memcpy] 1\n"
            "  [x] 3\n"
            "  target 4\n"
            "lone.c#lone 0\n");

  graph.Adjust("target", 100);
  model->RefreshMarks();
  EXPECT_EQ(Text(),
            "main& 0+\n"
            "  also 4\n"
            "  big 4\n"
            "  f 4\n"
            "  [memcpy] 1\n"
            "  [x] 3\n"
            "  target 0\n"
            "lone.c#lone 4\n");
}

TEST_F(CallTree, RebuildReopensThePathsThatStillExist) {
  ComputedGraph graph(
      "main 10 -> a b\n"
      "a 20 -> c\n"
      "b 5 -> c\n"
      "c 30 -> d\n"
      "d 1");
  Show(graph);
  Open({0});
  Open({0, 0});
  const QModelIndex selected = Open({0, 0, 0});
  graph["c"].extraCallees = {&graph["main"]};
  EXPECT_EQ(Rebuilt(graph, {"main", "a", "c"}, selected),
            "main 0+\n"
            "  a 0+\n"
            "    c 0+\n"
            "      d 4\n"
            "      main 0+\n"
            "  b 4+\n");
  EXPECT_EQ(restoredSelection, "c");

  // c is called by b only: what was open and selected below a has no place any more.
  graph["a"].callees.clear();
  EXPECT_EQ(Rebuilt(graph, {"main", "a", "c"}, Open({0, 0, 0})),
            "main 0+\n"
            "  a 0\n"
            "  b 4+\n");
  EXPECT_EQ(restoredSelection, "");
}

TEST_F(CallTree, TouchesNoFunctionWhileAJobChangesThem) {
  ComputedGraph graph("main 10 -> a\na 20 -> b\nb 1");
  Show(graph);
  Open({0});
  const std::string before = Text();
  busy = true;
  graph["main"].flags |= FN_INDIRECT_CALL;
  graph["a"].callees.clear();
  EXPECT_EQ(Text(), before);
  Open({0, 0});
  EXPECT_EQ(Text(), before);
  busy = false;
  EXPECT_EQ(Text(),
            "main& 0+\n"
            "  a 0\n");
}

// A chain of rings: every function is recursive and nothing repeats before the very end.
TEST_F(CallTree, DeepAndWideTreesCostTheirNodes) {
  constexpr int kDepth = 100000;
  constexpr int kWidth = 20000;
  ComputedGraph graph("first 1");
  StkFunction* above = &graph["first"];
  const StkFileEntry& file = graph.files.Intern("C:\\p\\deep.c");
  for (int i = 0; i < kDepth; ++i) {
    StkFunction& next = graph.functions.AddDefined("_f" + std::to_string(i), file);
    next.flags |= FN_GLOBAL | FN_RECURSIVE;
    above->callees.push_back(&next);
    above = &next;
  }
  for (int i = 0; i < kWidth; ++i) {
    above->callees.push_back(&graph.functions.AddDefined("_w" + std::to_string(i), file));
  }
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
  EXPECT_EQ(model->NodeCount(), static_cast<size_t>(1 + kDepth + kWidth));
  const CallTreePaths again =
      model->Save([](const QModelIndex&) { return true; }, restored.expanded.back());
  EXPECT_EQ(model->Rebuild(graph.roots.Functions(), again).expanded.size(), kDepth + 1);
  model->RefreshMarks();
  model->Clear();
  EXPECT_LT(std::clock() - start, 10 * CLOCKS_PER_SEC) << "quadratic in the depth";
}

}  // namespace
}  // namespace velkor::ui
