#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QPersistentModelIndex>
#include <QTest>

#include "main_window.h"
#include "support/computed_graph.h"
#include "ui/arrow_header.h"
#include "ui/function_icons.h"
#include "ui/function_list_model.h"

namespace velkor {
namespace {

using testing::ComputedGraph;
using testing::MainWindow;

class FunctionList : public ::testing::Test {
 protected:
  void Show(ComputedGraph& graph, std::string_view cName, bool repeated = false) {
    model = std::make_unique<FunctionListModel>(
        graph.codePage, std::array<QString, 5>{"a", "b", "c", "d", "e"}, KindDescriptions());
    new QAbstractItemModelTester(model.get(), QAbstractItemModelTester::FailureReportingMode::Fatal,
                                 model.get());
    model->Fill({&graph[cName], true, repeated}, {}, false);
  }
  std::string Text() const {
    std::string text;
    for (int row = 0; row < model->rowCount(); ++row) {
      text += std::to_string(model->IconIndexAt(row));
      for (int column = 0; column < model->columnCount(); ++column) {
        text += "|" + model->index(row, column).data().toString().toStdString();
      }
      text += "\n";
    }
    return text;
  }

  std::unique_ptr<FunctionListModel> model;
};

TEST_F(FunctionList, ShowsTheFunctionItsCalleesAndItsExtraCallees) {
  ComputedGraph graph(
      "main 10 -> big also x lib self => target\n"
      "big 50\n"
      "also 50\n"
      "? x\n"
      "? lib\n"
      "self 5 -> self\n"
      "target 7");
  graph["main"].flags |= FN_INDIRECT_CALL;
  graph.SetLibrarySize("lib", 8);
  graph.Adjust("self", 1, 3);
  Show(graph, "main");
  EXPECT_EQ(Text(),
            "0|main&|60|10||C:\\p\\main.c\n"
            "10|also|50|50||C:\\p\\also.c\n"
            "10|big|50|50||C:\\p\\big.c\n"
            "11|[lib]|8|?|8|\n"
            "11|self*|18|5|1 *3|C:\\p\\self.c\n"
            "13|[x]|?|?||\n"
            "14|target|7|7||C:\\p\\target.c\n");
  Show(graph, "self", true);
  EXPECT_EQ(Text(), "0|self*|18|5|1 *3|C:\\p\\self.c\n") << "a repeated node shows itself only";

  Show(graph, "main");
  const QPersistentModelIndex selected = model->index(4, 0);
  model->Sort(SortKey::kTotal, true);
  EXPECT_EQ(selected.row(), 3);
  EXPECT_EQ(model->FunctionAt(3), &graph["self"]);
  graph.Adjust("x", 900);
  EXPECT_EQ(model->index(6, 1).data().toString(), "?") << "the values of when it was filled";
}

class FunctionListView : public MainWindow {
 protected:
  FunctionListView() : MainWindow({"main 10 a b c", "a 2", "b 1", "c 3"}) {}

  void ClickHeader(int column) {
    QHeaderView* header = List().header();
    QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier,
                      {header->sectionViewportPosition(column) + 20, header->height() / 2});
  }
  // The column of the arrow and its direction.
  std::string Arrow() {
    const auto* header = static_cast<const ArrowHeader*>(List().header());
    return std::to_string(header->ArrowSection()) + (header->ArrowDescending() ? "v" : "^");
  }
};

TEST_F(FunctionListView, HeaderClicksAndCommandsSortWithToggling) {
  Start(std::nullopt);
  ClickHeader(1);
  EXPECT_EQ(Arrow(), "-1^") << "without functions a click does nothing";
  ASSERT_TRUE(app->OpenDocumentFile(kProject));
  Finish();
  const std::pair<int, const char*> clicks[] = {{1, "main b a c 1^"},
                                                {1, "main c a b 1v"},
                                                {1, "main b a c 1^"},
                                                {4, "main a b c 4^"}};  // one file: table order
  for (const auto& [column, expected] : clicks) {
    ClickHeader(column);
    EXPECT_EQ(ListText() + Arrow(), expected);
  }
  Choose(Command::kSortByIcon);
  EXPECT_EQ(ListText() + Arrow(), "main c a b 0^") << "c is on the maximum chain";
  EXPECT_TRUE(app->Frame().Actions().Of(Command::kSortByIcon).isChecked());
  Choose(Command::kSortByName);
  EXPECT_EQ(Arrow(), "0^") << "another key, though the same column";
  ClickHeader(0);

  // The order stays for the next fill and is forgotten with the analysis.
  Document().UpdateAllViews(nullptr, HINT_SELECTION);
  EXPECT_EQ(ListText() + Arrow(), "main c b a 0v");
  Document().Recalculate();
  EXPECT_EQ(ListText() + Arrow(), "-1^");
  Finish();
  EXPECT_EQ(ListText() + Arrow(), "main a b c -1^");
}

TEST_F(FunctionListView, SearchesNamesAndShowsItsSelectionOnlyWithTheFocus) {
  StartAndFinish();
  Focus(Tree());
  const auto picture = [this] { return List().viewport()->grab().toImage(); };
  const QImage plain = picture();
  List().setCurrentIndex(List().model()->index(1, 2));
  Focus(List());
  QTest::keyClicks(&List(), "c");
  EXPECT_EQ(List().SelectedFunction(), &Function("c"));
  EXPECT_NE(picture(), plain);
  Focus(Tree());
  EXPECT_EQ(picture(), plain);
  EXPECT_EQ(List().SelectedFunction(), &Function("c"));
}

}  // namespace
}  // namespace velkor
