#include <gtest/gtest.h>

#include "support/computed_graph.h"
#include "ui/views/call_tree_model.h"

namespace velkor::ui {
namespace {

TEST(CallTreeMarks, GoWithTheTotalsAndAreNotKeptForALaterJob) {
  testing::ComputedGraph graph("main 10 -> big small\nbig 50\nsmall 20\nother 5");
  bool busy = false;
  CallTreeModel model(graph.codePage, KindDescriptions{"max", "1", "2", "3", "known"},
                      [&busy] { return busy; });
  model.Fill(graph.roots.Functions());
  const QModelIndex main = model.index(0, 0);
  model.fetchMore(main);
  const QModelIndex big = model.index(0, 0, main);
  const auto kind = [](const QModelIndex& index) {
    return index.data(Qt::AccessibleDescriptionRole).toString().toStdString();
  };
  EXPECT_EQ(kind(main) + " " + kind(big), "max max");
  graph.Adjust("small", 100);
  graph.Adjust("other", 500);
  model.RefreshMarks();
  busy = true;
  EXPECT_EQ(kind(main) + kind(big), "") << "not as they were shown before";
  busy = false;
  EXPECT_EQ(kind(main) + " " + kind(big), "known known");
}

}  // namespace
}  // namespace velkor::ui
