#include "ui/function_rows.h"

#include <QAbstractItemModelTester>
#include <QTest>
#include <gtest/gtest.h>

#include "support/computed_graph.h"

namespace velkor {
namespace {

using testing::ComputedGraph;

std::string Texts(const FunctionRowsModel& model) {
  std::string texts;
  for (int row = 0; row < model.rowCount(); ++row) {
    texts += model.index(row).data().toString().toStdString() + "\n";
  }
  return texts;
}

TEST(FunctionRowsModel, ShowsTextItemsAndMarksAddedRows) {
  ComputedGraph graph("main 10 -> u\nstatic f 20\nloop 1 -> loop\n? u");
  graph.Adjust("loop", 2, 3);
  FunctionRowsModel model(graph.codePage);
  const QAbstractItemModelTester tester(&model);
  model.SetRows({&graph["main"], &graph["u"]}, 2);
  EXPECT_EQ(Texts(model), "main(10:10)\n[u](?:?)\n");
  model.InsertAdded(2, graph["loop"]);
  model.InsertAdded(2, graph["f"]);
  EXPECT_EQ(Texts(model), "main(10:10)\n[u](?:?)\n+f.c#f(20:20)\n+loop*(9:1:+2*3)\n");
  model.RemoveAdded(2);
  EXPECT_EQ(Texts(model), "main(10:10)\n[u](?:?)\n+loop*(9:1:+2*3)\n");
  model.RemoveAllAdded();
  model.RemoveAllAdded();
  EXPECT_EQ(Texts(model), "main(10:10)\n[u](?:?)\n");
}

TEST(FunctionRowsModel, CutsLongTextsBetweenCharacters) {
  // The row of a name of n bytes has n + 5 bytes: "(2:2)".
  for (const size_t length : {254u, 255u}) {
    ComputedGraph graph(std::string(length, 'a') + " 2");
    FunctionRowsModel model(graph.codePage);
    model.SetRows(graph.functions.Functions(), 1);
    EXPECT_EQ(Texts(model),
              length == 254 ? std::string(254, 'a') + "(2:2)\n" : std::string(255, 'a') + "(...\n");
  }
  ComputedGraph graph("a" + std::string(254, 'b') + "\xE3\x81\x82\xE3\x81\x82 2");
  FunctionRowsModel model(graph.codePage);
  model.SetRows(graph.functions.Functions(), 1);
  EXPECT_EQ(Texts(model), "a" + std::string(254, 'b') + "...\n");
}

TEST(FunctionRowsModel, SearchesNamesAlsoBehindFilesAndBrackets) {
  ComputedGraph graph("alpha 1\nstatic beta 1\n? alpine\nBeat 1");
  FunctionRowsModel model(graph.codePage);
  model.SetRows(graph.functions.Functions(), 4);
  const auto find = [&](int from, const QString& search) {
    const QModelIndexList found = model.match(model.index(from), Qt::DisplayRole, search, 1,
                                              Qt::MatchStartsWith | Qt::MatchWrap);
    return found.empty() ? -1 : found.front().row();
  };
  EXPECT_EQ(find(0, "ALP"), 0);
  EXPECT_EQ(find(1, "alp"), 2);
  EXPECT_EQ(find(3, "alp"), 0);
  EXPECT_EQ(find(0, "[alp"), 2);
  EXPECT_EQ(find(0, "beta.c#"), 1);
  EXPECT_EQ(find(0, "bea"), 3);
  EXPECT_EQ(find(0, "beta"), 1);
  EXPECT_EQ(find(0, "alphabet"), -1);
  EXPECT_EQ(find(0, "(1"), -1);
}

TEST(FunctionRows, SelectsOnlyWhatTheUserChooses) {
  ComputedGraph graph("a 1\nb 1\nc 1");
  FunctionRows rows(graph.codePage);
  rows.SetFunctions(graph.functions.Functions(), 0);
  rows.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&rows));
  rows.setFocus();
  EXPECT_EQ(rows.SelectedFunction(), nullptr);
  QTest::keyClick(&rows, Qt::Key_Down);
  EXPECT_EQ(rows.SelectedFunction(), &graph["a"]);
  QTest::keyClick(&rows, Qt::Key_Down);
  EXPECT_EQ(rows.SelectedFunction(), &graph["b"]);
  rows.Rows().RemoveAdded(0);
  EXPECT_EQ(rows.SelectedFunction(), &graph["b"]);
  rows.Rows().RemoveAdded(0);
  EXPECT_EQ(rows.SelectedFunction(), nullptr);
  QTest::keyClick(&rows, Qt::Key_C);
  EXPECT_EQ(rows.SelectedFunction(), &graph["c"]);
}

// So many are put in order in steps between which the window answers.
TEST(FunctionRows, ManyRowsComeWhenTheyAreInOrder) {
  const CodePage codePage = CodePage::Utf8();
  StkFunctionTable table(codePage);
  for (int i = 0; i < 50000; ++i) {
    table.AddUnknown("_f" + std::to_string(i * 7919 % 40009));
  }
  FunctionRows rows(codePage);
  StkFunctionList sorted = table.Functions();
  rows.SetFunctionsByName(sorted);
  EXPECT_EQ(rows.Rows().rowCount(), 0);
  sorted.resize(49999);
  rows.SetFunctionsByName(sorted);  // others take the place of those that are being sorted
  ASSERT_TRUE(QTest::qWaitFor([&rows] { return rows.Rows().rowCount() > 0; }, 30000));
  SortByName(sorted, codePage);
  for (size_t row = 0; row < sorted.size(); ++row) {
    ASSERT_EQ(rows.Rows().FunctionAt(static_cast<int>(row)), sorted[row]);
  }
}

}  // namespace
}  // namespace velkor
