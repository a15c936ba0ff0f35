#include <QContextMenuEvent>
#include <QMenu>
#include <QTest>

#include "analysis_window.h"

namespace velkor {
namespace {

using testing::AnalysisWindow;

class CallTreeView : public AnalysisWindow {
 protected:
  CallTreeView()
      : AnalysisWindow(
            {"main 10 a b spin", "a 20 c", "b 20 c", "c 5", "spin 3 spin", "other 4 a"}) {}

  QMenu* RightClick(const QModelIndex& index) {
    const QPoint position = tree.visualRect(index).center();
    QTest::mousePress(tree.viewport(), Qt::RightButton, Qt::NoModifier, position);
    QContextMenuEvent event(QContextMenuEvent::Mouse, position,
                            tree.viewport()->mapToGlobal(position));
    QApplication::sendEvent(tree.viewport(), &event);
    QTest::mouseRelease(tree.viewport(), Qt::RightButton, Qt::NoModifier, position);
    return tree.findChild<QMenu*>();
  }
  bool Enabled(CommandTarget& target, Command command) {
    const auto state = target.StateOf(command);
    return state && state->enabled;
  }
};

TEST_F(CallTreeView, SelectionFillsTheList) {
  Open();
  EXPECT_EQ(Tree(), "main <\nother\n");
  EXPECT_EQ(document.CurrentSelection(), &Function("main"));
  EXPECT_EQ(List(), "main|35|10|\na|25|20|\nb|25|20|\nspin*|3|3|\n");

  tree.expand(Node("main"));
  tree.expand(Node("spin*"));
  Click(Node("spin*", 1));
  EXPECT_EQ(Tree(), "main\n  a\n  b\n  spin*\n    spin* <\nother\n");
  EXPECT_TRUE(tree.SelectedRecord()->repeated);
  EXPECT_EQ(List(), "spin*|3|3|\n") << "a repeated node shows its own row only";

  // A selection never hides in a collapsed branch.
  tree.collapse(Node("main"));
  EXPECT_EQ(Tree(), "main <\nother\n");
  EXPECT_EQ(document.CurrentSelection(), &Function("main"));

  // Ctrl and a click leave the node selected.
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::ControlModifier,
                    tree.visualRect(Node("main")).center());
  EXPECT_EQ(Tree(), "main <\nother\n");

  document.Recalculate();
  EXPECT_EQ(Tree(), "");
  EXPECT_EQ(document.CurrentSelection(), nullptr);
  EXPECT_EQ(List(), "");
  EXPECT_FALSE(Enabled(tree, Command::kAdjustStackSize));
  Finish();
  EXPECT_EQ(Tree(), "main <\nother\n");
  EXPECT_EQ(List(), "main|35|10|\na|25|20|\nb|25|20|\nspin*|3|3|\n");
}

TEST_F(CallTreeView, KeysReachNodesButNeverOpenAWholeBranch) {
  Open();
  QTest::keyClick(&tree, Qt::Key_Asterisk);
  EXPECT_EQ(Tree(), "main <\n  a\n  b\n  spin*\nother\n");
  QTest::keyClicks(&tree, "oth");
  EXPECT_EQ(document.CurrentSelection(), &Function("other"));
}

TEST_F(CallTreeView, ChildrenComeIntoSightWhenTheirNodeOpens) {
  Open();
  const auto isInSight = [this](const QModelIndex& index) {
    return tree.viewport()->rect().contains(tree.visualRect(index));
  };
  const int row = tree.visualRect(Node("main")).height();
  tree.resize(300, row * 3 + tree.height() - tree.viewport()->height());
  tree.expand(Node("main"));
  EXPECT_TRUE(isInSight(Node("main"))) << "more children than fit never push their node out";
  tree.collapse(Node("main"));
  tree.resize(300, row * 2 + tree.height() - tree.viewport()->height());
  tree.expand(Node("other"));
  EXPECT_TRUE(isInSight(Node("a")));
  EXPECT_TRUE(isInSight(Node("other")));
}

TEST_F(CallTreeView, MarksFollowAnAdjustmentAndBranchesStayOpen) {
  Open();
  tree.expand(Node("main"));
  tree.expand(Node("b"));
  Click(Node("c"));
  const std::string before = Tree();
  Click(Node("b"));
  EXPECT_TRUE(tree.SelectedRecord()->onMaximumChain) << "a and b share the largest total";
  StkAdjustment adjustment;
  adjustment.margin = 40;
  ASSERT_TRUE(document.AdjustFunction(Function("a"), adjustment));
  EXPECT_EQ(Tree(), "main\n  a\n  b <\n    c\n  spin*\nother\n");
  EXPECT_FALSE(tree.SelectedRecord()->onMaximumChain);

  // An extra callee rebuilds the tree; what still exists is open and selected again.
  Click(Node("c"));
  EXPECT_EQ(Tree(), before);
  adjustment.SetCallees({&Function("other")}, host.codePage);
  ASSERT_TRUE(document.AdjustFunction(Function("b"), adjustment));
  EXPECT_EQ(Tree(), "main\n  a\n  b\n    c <\n    other\n  spin*\n");
  EXPECT_EQ(document.CurrentSelection(), &Function("c"));
  EXPECT_EQ(List(), "c|5|5|\n");
}

TEST_F(CallTreeView, TheRightClickedNodeIsTheTargetOnce) {
  Open();
  tree.expand(Node("main"));
  QMenu* menu = RightClick(Node("b"));
  ASSERT_NE(menu, nullptr);
  ASSERT_EQ(menu->actions().size(), 1);
  EXPECT_EQ(document.CurrentSelection(), &Function("main")) << "a right click selects nothing";
  // An enabling check that happens while the menu is open takes the target; the choice still
  // means the node under the pointer.
  EXPECT_TRUE(Enabled(tree, Command::kAdjustStackSize));
  menu->actions().front()->trigger();
  tree.Execute(Command::kAdjustStackSize);
  EXPECT_EQ(frame.calls, (std::vector<std::string>{"adjust _b", "adjust _main"}));
  delete menu;

  // A dismissed menu leaves no target behind.
  menu = RightClick(Node("a"));
  ASSERT_NE(menu, nullptr);
  menu->hide();
  tree.Execute(Command::kSaveAllChains);
  EXPECT_EQ(frame.calls.back(), "all _main");
  delete menu;

  QContextMenuEvent nowhere(QContextMenuEvent::Mouse, QPoint(10, 590), QPoint(10, 590));
  QApplication::sendEvent(tree.viewport(), &nowhere);
  EXPECT_EQ(tree.findChild<QMenu*>(), nullptr);
}

TEST_F(CallTreeView, CommandsNeedATargetAndResetAnAdjustment) {
  for (const Command command : {Command::kSaveMaximumChain, Command::kSaveAllChains,
                                Command::kAdjustStackSize, Command::kResetFunction}) {
    EXPECT_FALSE(Enabled(tree, command));
    EXPECT_FALSE(Enabled(list, command));
  }
  EXPECT_FALSE(tree.StateOf(Command::kSortByName).has_value());
  EXPECT_FALSE(tree.StateOf(Command::kCopy).has_value());
  Open();
  EXPECT_TRUE(Enabled(tree, Command::kSaveMaximumChain));
  EXPECT_FALSE(Enabled(list, Command::kSaveMaximumChain)) << "no row is selected yet";
  EXPECT_FALSE(Enabled(tree, Command::kResetFunction));
  StkAdjustment adjustment;
  adjustment.margin = 1;
  ASSERT_TRUE(document.AdjustFunction(Function("main"), adjustment));
  Finish();
  EXPECT_TRUE(Enabled(tree, Command::kResetFunction));
  tree.Execute(Command::kResetFunction);
  tree.Execute(Command::kSaveMaximumChain);
  list.setCurrentIndex(list.model()->index(1, 0));
  EXPECT_TRUE(Enabled(list, Command::kAdjustStackSize));
  EXPECT_FALSE(Enabled(list, Command::kResetFunction));
  list.Execute(Command::kSaveAllChains);
  EXPECT_EQ(frame.calls, (std::vector<std::string>{"reset _main", "maximum _main", "all _a"}));
}

}  // namespace
}  // namespace velkor
