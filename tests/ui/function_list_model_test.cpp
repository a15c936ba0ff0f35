#include "ui/function_list_model.h"

#include <QAbstractItemModelTester>
#include <QPersistentModelIndex>
#include <gtest/gtest.h>

#include "computed_graph.h"
#include "qt_environment.h"
#include "ui/function_icons.h"

namespace velkor {
namespace {

using testing::ComputedGraph;

class FunctionList : public ::testing::Test {
 protected:
  FunctionList() { testing::TestApplication(); }

  FunctionListModel& Show(ComputedGraph& graph, std::string_view cName, bool repeated = false,
                          std::optional<SortKey> key = {}, bool descending = false) {
    model = std::make_unique<FunctionListModel>(
        graph.codePage, std::array<QString, 5>{"a", "b", "c", "d", "e"}, KindDescriptions());
    new QAbstractItemModelTester(model.get(), QAbstractItemModelTester::FailureReportingMode::Fatal,
                                 model.get());
    model->Fill({&graph[cName], true, repeated}, key, descending);
    return *model;
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
  Show(graph, "big");
  EXPECT_EQ(Text(), "0|big|50|50||C:\\p\\big.c\n");
  Show(graph, "self", true);
  EXPECT_EQ(Text(), "0|self*|18|5|1 *3|C:\\p\\self.c\n") << "a repeated node shows itself only";
  Show(graph, "main", false, SortKey::kTotal, true);
  EXPECT_EQ(model->index(0, 0).data().toString(), "main&");
  EXPECT_EQ(model->index(3, 0).data().toString(), "self*");

  // The values are those of the time when the list was filled.
  graph.Adjust("x", 900);
  EXPECT_EQ(model->index(6, 1).data().toString(), "?");
}

TEST_F(FunctionList, KeepsWhatIsSelectedWhileSorting) {
  ComputedGraph graph("main 10 -> a b c\na 1\nb 3\nc 2");
  Show(graph, "main");
  const QPersistentModelIndex b = model->index(2, 0);
  model->Sort(SortKey::kTotal, true);
  EXPECT_EQ(b.row(), 1);
  EXPECT_EQ(model->FunctionAt(b.row()), &graph["b"]);
  model->Sort(SortKey::kTotal, false);
  EXPECT_EQ(b.row(), 3);
}

TEST_F(FunctionList, DrawsTheBoxOfTheFirstRowLeftAndThatOfACalleeRight) {
  const QImage first = ListIcon(0).pixmap(32, 16).toImage();
  const QImage callee = ListIcon(10).pixmap(32, 16).toImage();
  EXPECT_EQ(qAlpha(first.pixel(24, 8)), 0);
  EXPECT_EQ(qAlpha(callee.pixel(8, 8)), 0);
  EXPECT_EQ(first.pixel(8, 8), callee.pixel(24, 8));
  // Sharp at any scale: the edge of the box is as narrow in a larger image.
  const QImage large = ListIcon(0).pixmap(128, 64).toImage();
  EXPECT_EQ(large.pixel(20, 32), first.pixel(8, 8));
}

}  // namespace
}  // namespace velkor
