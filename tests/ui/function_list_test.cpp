#include <QAbstractItemModelTester>
#include <QPersistentModelIndex>
#include <gtest/gtest.h>

#include "support/computed_graph.h"
#include "ui/views/function_icons.h"
#include "ui/views/function_list_model.h"

namespace velkor::ui {
namespace {

using testing::ComputedGraph;

class FunctionList : public ::testing::Test {
 protected:
  void Show(ComputedGraph& graph, std::string_view cName, bool repeated = false) {
    model = std::make_unique<FunctionListModel>(
        graph.codePage, std::array<QString, 5>{"a", "b", "c", "d", "e"}, KindDescriptions());
    new QAbstractItemModelTester(model.get(), QAbstractItemModelTester::FailureReportingMode::Fatal,
                                 model.get());
    model->Fill({&graph[cName], true, repeated}, kSizeLimit, {}, false);
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

}  // namespace
}  // namespace velkor::ui
