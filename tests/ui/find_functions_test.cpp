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
                    "indirect loop 6 loop far ext", "other 3"}) {
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
  // The toolkit opens a level at a time, as they are made.
  void OpenAllCallers() {
    for (QModelIndex index = Callers().model()->index(0, 0); index.isValid();
         index = Callers().indexBelow(index)) {
      Callers().expand(index);
    }
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
  const std::string atDeep = "main\n  loop*&\n  work\n    a.c#deep <\nother\ng\n";
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

  // The next of what was found, round and round, wherever the keyboard is.
  EXPECT_EQ(Find("a.c >206"), "main:221 work:211 a.c#deep:207 ");
  Tree().setFocus();
  std::string passed;
  for (int i = 0; i < 4; ++i) {
    Press(Qt::Key_F3);
    passed += std::string(Document().CurrentSelection()->name) + " ";
  }
  Press(Qt::Key_F3, Qt::ShiftModifier);
  EXPECT_EQ(passed + std::string(Document().CurrentSelection()->name),
            "_main _work _deep _main _deep");
}

TEST_F(FindFunctions, TheTableIsSortedFilteredAndCopied) {
  EXPECT_EQ(Find(""), "main:221 work:211 a.c#deep:207 loop*&:206 far:200 g:5 other:3 [ext]:? ");
  EXPECT_EQ(Find("10"), "main:221 ") << "the whole number of a frame";
  EXPECT_EQ(Find("O A.C"), "work:211 loop*&:206 other:3 ");
  emit All().Table().horizontalHeader()->sectionClicked(0);
  Wait();
  EXPECT_EQ(Rows(), "loop*&:206 other:3 work:211 ");
  All().Table().selectAll();
  Choose(Command::kCopyAsCsv);
  Wait();
  EXPECT_EQ(QApplication::clipboard()->text(),
            "Function,Total Stack Size,Frame Size,Additional Margin,Bound,File,Line\n"
            "loop*&,206,6,,\u2265206,C:\\p\\a.c,\n"
            "other,3,3,,3,C:\\p\\a.c,\n"
            "work,211,4,,211,C:\\p\\a.c,\n");
  All().Table().selectRow(1);
  All().Table().setFocus();
  Press(Qt::Key_C, Qt::ControlModifier);
  Wait();
  EXPECT_EQ(QApplication::clipboard()->text(), "other\t3\t3\t\t3\tC:\\p\\a.c\t\n");

  // What is shown follows the analysis, and the selection its function.
  adjustAnswer.accepted = true;
  adjustAnswer.adjustment.emplace().margin = 300;
  Choose(Command::kAdjustStackSize);
  Finish();
  Wait();
  EXPECT_EQ(Rows(), "loop*&:206 other:303 work:211 ");
  emit All().Table().horizontalHeader()->sectionClicked(1);
  Wait();
  EXPECT_EQ(Rows(), "other:303 work:211 loop*&:206 ");
  EXPECT_EQ(All().SelectedFunction(), &Function("other"));
  Choose(Command::kRecalculate);
  EXPECT_EQ(Rows(), "") << "the functions are gone";
  Finish();
  Wait();
  EXPECT_EQ(Rows(), "other:303 work:211 loop*&:206 ");
  Choose(Command::kAllFunctions);
  HandleEvents();
  EXPECT_EQ(QApplication::focusWidget(), &Tree()) << "commands act on what is seen";
}

TEST_F(FindFunctions, TheCallersAreATreeThatLeadsToTheCallTree) {
  EXPECT_EQ(Find("far"), "far:200 ");
  Choose(Command::kShowCallers);
  ASSERT_TRUE(WaitUntil([this] { return Callers().model()->rowCount() > 0; }));
  OpenAllCallers();
  EXPECT_EQ(CallersText(),
            "far\n  a.c#deep\n    work\n      main\n"
            "  loop*&\n    main\n    loop*&\n");
  QTest::keyClicks(&Callers(), "w");
  Press(Qt::Key_Return);
  EXPECT_EQ(Document().CurrentSelection(), &Function("work"));
  // A callee is stated.
  adjustAnswer.accepted = true;
  adjustAnswer.adjustment.emplace().callees = StkFunctionList{&Function("work")};
  List().setFocus();
  Tree().setFocus();
  Tree().setCurrentIndex(Node("loop*&"));
  Choose(Command::kAdjustStackSize);
  Finish();
  ASSERT_TRUE(WaitUntil([this] { return Callers().model()->rowCount() > 0; }));
  HandleEvents();
  OpenAllCallers();
  EXPECT_NE(CallersText().find("    work\n      main\n      loop*&\n"), std::string::npos)
      << CallersText();
}

}  // namespace
}  // namespace velkor::ui
