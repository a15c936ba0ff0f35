#include <QApplication>
#include <QClipboard>
#include <QDockWidget>
#include <QHeaderView>
#include <QStatusBar>
#include <QTest>

#include "main_window.h"

namespace velkor::ui {
namespace {

// A static function and one that is called from two sides, below branches that are closed.
class FindFunctions : public MainWindow {
 protected:
  FindFunctions()
      : MainWindow({"main 10 work loop", "work 4 deep", "static deep 7 far", "far 200",
                    "loop 6 loop far ext", "other 3"}) {
    StartAndFinish();
  }

  AllFunctionsView& All() { return app->Frame().Panels().AllFunctions(); }
  CallersView& Callers() { return app->Frame().Panels().Callers(); }
  void Wait() {
    ASSERT_TRUE(WaitUntil([this] { return !All().IsWorking(); }));
    HandleEvents();
  }
  // Found by keys from wherever the keyboard is; the rows with their totals.
  std::string Find(const QString& text) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F, Qt::ControlModifier);
    Wait();
    QTest::keyClicks(QApplication::focusWidget(), text);
    Wait();
    return Rows();
  }
  std::string Rows() {
    std::string rows;
    const QAbstractItemModel& model = *All().Table().model();
    for (int row = 0; row < model.rowCount(); ++row) {
      rows += model.index(row, 0).data().toString().toStdString() + ":" +
              model.index(row, 1).data().toString().toStdString() + " ";
    }
    return rows;
  }
  void Press(Qt::Key key, Qt::KeyboardModifiers held = Qt::NoModifier) {
    QTest::keyClick(QApplication::focusWidget(), key, held);
    HandleEvents();
  }
  std::string CallersText() {
    std::string text;
    for (QModelIndex index = Callers().model()->index(0, 0); index.isValid();
         index = Callers().indexBelow(index)) {
      for (QModelIndex above = index.parent(); above.isValid(); above = above.parent()) {
        text += "  ";
      }
      text += index.data().toString().toStdString() + "\n";
    }
    return text;
  }
};

TEST_F(FindFunctions, AFunctionIsFoundBelowClosedBranchesAndTheWayIsKept) {
  EXPECT_EQ(Find("#DEE"), "a.c#deep:207 ");
  Press(Qt::Key_Return);
  const std::string atDeep = "main\n  loop*\n  work\n    a.c#deep <\nother\ng\n";
  EXPECT_EQ(TreeText(), atDeep);
  EXPECT_EQ(ListText(), "a.c#deep far ");
  List().setFocus();
  Press(Qt::Key_Down);
  Press(Qt::Key_Down);
  Press(Qt::Key_Return);
  EXPECT_EQ(Document().CurrentSelection(), &Function("far")) << "from the list";
  Press(Qt::Key_Left, Qt::AltModifier);
  EXPECT_EQ(Document().CurrentSelection()->name, "_deep");
  Press(Qt::Key_Left, Qt::AltModifier);
  EXPECT_EQ(Document().CurrentSelection(), &Function("main"));
  EXPECT_FALSE(IsEnabled(Command::kGoBack));
  Press(Qt::Key_Right, Qt::AltModifier);
  EXPECT_EQ(Document().CurrentSelection()->name, "_deep");
  EXPECT_TRUE(IsEnabled(Command::kGoForward));

  // The next of what was found, round and round.
  EXPECT_EQ(Find("b.c "), "g:5 ");
  EXPECT_EQ(Find("a.c >199"), "main:217 loop*:? a.c#deep:207 work:211 far:200 ");
}

TEST_F(FindFunctions, TheTableIsSortedFilteredAndCopied) {
  EXPECT_EQ(Find(""), "main:217 work:211 a.c#deep:207 loop*:206 far:200 g:5 other:3 [ext]:? ");
  EXPECT_EQ(Find("10"), "main:217 ") << "a whole number";
  EXPECT_EQ(Find("o"), "main:217 ");
  All().Text().clear();
  All().Table().horizontalHeader()->sectionClicked(0);
  Wait();
  EXPECT_EQ(Rows(), "");
}

}  // namespace
}  // namespace velkor::ui
