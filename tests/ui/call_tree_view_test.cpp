#include <QContextMenuEvent>
#include <QMenu>
#include <QTest>

#include "main_window.h"
#include "ui/views/name_delegate.h"

namespace velkor::ui {
namespace {

class CallTreeView : public MainWindow {
 protected:
  CallTreeView()
      : MainWindow({"main 10 a b spin", "a 20 c", "b 20 c", "c 5", "spin 3 spin", "other 4 a"}) {}

  QMenu* RightClick(const QPoint& position) {
    QTest::mousePress(Tree().viewport(), Qt::RightButton, Qt::NoModifier, position);
    QContextMenuEvent event(QContextMenuEvent::Mouse, position,
                            Tree().viewport()->mapToGlobal(position));
    QApplication::sendEvent(Tree().viewport(), &event);
    QTest::mouseRelease(Tree().viewport(), Qt::RightButton, Qt::NoModifier, position);
    return Tree().findChild<QMenu*>();
  }
  void Adjust(const std::string& name, StkFunctionList callees = {}) {
    StkAdjustment adjustment;
    adjustment.margin = 40;
    if (!callees.empty()) {
      adjustment.SetCallees(callees, host.codePage);
    }
    ASSERT_TRUE(Document().AdjustFunction(Function(name), adjustment));
    Finish();
  }
};

TEST_F(CallTreeView, SelectionFillsTheList) {
  StartAndFinish();
  EXPECT_EQ(TreeText(), "main <\nother\ng\n");
  EXPECT_EQ(Document().CurrentSelection(), &Function("main"));
  EXPECT_EQ(ListText(), "main a b spin* ");

  Choose(Command::kSortByTotal);
  EXPECT_EQ(ListText(), "main spin* a b ");
  Choose(Command::kSortByTotal);
  EXPECT_EQ(ListText(), "main a b spin* ") << "turned round";

  Tree().expand(Node("main"));
  Tree().expand(Node("spin*"));
  Click(Node("spin*", 1));
  EXPECT_EQ(TreeText(), "main\n  a\n  b\n  spin*\n    spin* <\nother\ng\n");
  EXPECT_TRUE(Tree().SelectedRecord()->repeated);
  EXPECT_EQ(ListText(), "spin* ") << "a repeated node shows its own row only";

  // A selection never hides in a collapsed branch.
  Tree().collapse(Node("main"));
  EXPECT_EQ(TreeText(), "main <\nother\ng\n");
  EXPECT_EQ(Document().CurrentSelection(), &Function("main"));

  Document().Recalculate();
  EXPECT_EQ(TreeText() + ListText(), "");
  EXPECT_EQ(Document().CurrentSelection(), nullptr);
  Finish();
  EXPECT_EQ(ListText(), "main a b spin* ");
}

TEST_F(CallTreeView, MarksFollowAnAdjustmentAndBranchesStayOpen) {
  StartAndFinish();
  Tree().expand(Node("main"));
  Tree().expand(Node("b"));
  Click(Node("b"));
  EXPECT_TRUE(Tree().SelectedRecord()->onMaximumChain) << "a and b share the largest total";
  Adjust("a");
  EXPECT_EQ(TreeText(), "main\n  a\n  b <\n    c\n  spin*\nother\ng\n");
  EXPECT_FALSE(Tree().SelectedRecord()->onMaximumChain);

  // An extra callee rebuilds the tree; what still exists is open and selected again.
  Click(Node("c"));
  Adjust("b", {&Function("other")});
  EXPECT_EQ(TreeText(), "main\n  a\n  b\n    c <\n    other\n  spin*\ng\n");
  EXPECT_EQ(Document().CurrentSelection(), &Function("c"));
  EXPECT_EQ(ListText(), "c ");

  // What was open and selected below an extra callee has no place any more.
  Tree().expand(Node("other"));
  Click(Node("a", 1));
  EXPECT_TRUE(Document().CancelAllAdjustments());
  Finish();
  EXPECT_EQ(TreeText(), "main <\n  a\n  b\n    c\n  spin*\nother\ng\n");
}

// main calls a and b, which take as much; b is the second.
TEST_F(CallTreeView, OpensTheMaximumChainAndOrdersBySize) {
  StartAndFinish();
  Choose(Command::kTreeBySize);
  EXPECT_EQ(TreeText(), "main <\nother\ng\n");
  Choose(Command::kOpenMaximumChain);
  EXPECT_TRUE(WaitUntil([this] { return TreeText().find("    c\n") != std::string::npos; }));
  EXPECT_EQ(TreeText(), "main <\n  a\n    c\n  b\n  spin*\nother\ng\n");
  Choose(Command::kTreeByModule);
  EXPECT_EQ(TreeText(), "main <\n  a\n    c\n  b\n  spin*\nother\ng\n") << "all stays open";

  const auto behind = [this](const QString& name) {
    return Node(name).data(NameDelegate::kBehindNameRole).toString();
  };
  EXPECT_EQ(behind("a"), "25");
  EXPECT_EQ(behind("spin*"), "≥3") << "a recursion without a depth";
  EXPECT_EQ(behind("main"), "≥35");
  Choose(Command::kShowTotals);
  EXPECT_EQ(behind("a"), "");
}

TEST_F(CallTreeView, TheViewWithTheFocusIsTheTarget) {
  StartAndFinish();
  List().setFocus();
  List().setCurrentIndex(List().model()->index(2, 0));
  Choose(Command::kAdjustStackSize);
  Tree().setFocus();
  Choose(Command::kAdjustStackSize);
  EXPECT_EQ(adjusted, (std::vector<std::string>{"_b", "_main"}));
}

TEST_F(CallTreeView, TheRightClickedNodeIsTheTargetOnce) {
  StartAndFinish();
  Tree().expand(Node("main"));
  QMenu* menu = RightClick(Tree().visualRect(Node("b")).center());
  ASSERT_NE(menu, nullptr);
  ASSERT_EQ(menu->actions().size(), 1);
  EXPECT_EQ(Document().CurrentSelection(), &Function("main")) << "a right click selects nothing";
  // An enabling check that happens while the menu is open takes the target; the choice still
  // means the node under the pointer.
  EXPECT_TRUE(Tree().StateOf(Command::kAdjustStackSize)->enabled);
  menu->actions().front()->trigger();
  Tree().Execute(Command::kAdjustStackSize);
  EXPECT_EQ(adjusted, (std::vector<std::string>{"_b", "_main"}));
  delete menu;

  // A dismissed menu leaves no target behind.
  menu = RightClick(Tree().visualRect(Node("a")).center());
  ASSERT_NE(menu, nullptr);
  menu->hide();
  Tree().Execute(Command::kAdjustStackSize);
  EXPECT_EQ(adjusted.back(), "_main");
  delete menu;
  EXPECT_EQ(RightClick(Tree().viewport()->rect().bottomLeft()), nullptr);
}

}  // namespace
}  // namespace velkor::ui
