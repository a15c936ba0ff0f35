#include "ui/dialogs/adjust_dialog.h"

#include <QLineEdit>
#include <QTest>

#include "main_window.h"

namespace velkor::ui {
namespace {

class AdjustDialog : public MainWindow {
 protected:
  AdjustDialog() : MainWindow({"main 10 work", "work 4 leaf", "leaf 3", "loop 6 loop", "aim 2"}) {
    StartAndFinish();
  }

  void OpenFor(const std::string& cName) {
    dialog = std::make_unique<AdjustStackSizeDialog>(app->Context(), Function(cName), [](int) {});
    const QList<FunctionListBox*> lists = dialog->findChildren<FunctionListBox*>();
    callees = lists[0];
    all = lists[1];
    const QList<QLineEdit*> fields = dialog->findChildren<QLineEdit*>();
    margin = fields[2];
    depth = fields[3];
    dialog->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
  }
  void SetInForce(const std::string& cName, uint32_t marginInForce, uint32_t depthInForce) {
    Function(cName).adjustment =
        std::make_unique<StkAppliedAdjustment>(StkAppliedAdjustment{marginInForce, depthInForce});
  }
  void Press(const QString& text) { QTest::mouseClick(&Button(*dialog, text), Qt::LeftButton); }

  std::unique_ptr<AdjustStackSizeDialog> dialog;
  FunctionListBox* callees = nullptr;
  FunctionListBox* all = nullptr;
  QLineEdit* margin = nullptr;
  QLineEdit* depth = nullptr;
};

TEST_F(AdjustDialog, AddsAndDeletesRowsAndFollowsTheRecursion) {
  OpenFor("main");
  Select(*all, 4);
  Press("Add");
  EXPECT_TRUE(depth->isEnabled());
  depth->setText("7");
  Select(*all, 3);
  Press("Add");
  Select(*all, 0);
  Press("Add");
  EXPECT_EQ(RowsOf(*callees), "work(7:4)\n+aim(2:2)\n+loop*(6:6)\n+main(17:10)\n");
  Select(*callees, 3);
  Press("Delete");
  EXPECT_EQ(RowsOf(*callees), "work(7:4)\n+aim(2:2)\n+loop*(6:6)\n") << "and none is selected";
  EXPECT_FALSE(depth->isEnabled());
  Press("OK");
  EXPECT_EQ(dialog->result(), QDialog::Accepted);
  const std::optional<StkAdjustment> adjustment = dialog->BuildAdjustment();
  ASSERT_TRUE(adjustment);
  EXPECT_EQ(adjustment->depth, kNoDepth) << "not recursive";
  EXPECT_EQ(*adjustment->callees, (StkFunctionList{&Function("aim"), &Function("loop")}));
  EXPECT_TRUE(Function("main").extraCallees.empty());
}

TEST_F(AdjustDialog, KeepsARefusedFieldInFront) {
  OpenFor("loop");
  margin->setText("70000");
  depth->setText("0");
  Press("OK");
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_EQ(dialog->focusWidget(), margin);
  EXPECT_EQ(margin->selectedText(), "70000");
  margin->setText("0x10");
  QTest::keyClick(margin, Qt::Key_Return);
  EXPECT_EQ(dialog->focusWidget(), depth);
  EXPECT_EQ(depth->selectedText(), "0");
  EXPECT_EQ(BoxTexts(),
            "W9464 Too big additional margin.\nThe limit is 65535.|"
            "W9463 Illegal value (0) for recursion depth.|");
  depth->setText("3");
  Press("OK");
  EXPECT_FALSE(dialog->isVisible());
  const std::optional<StkAdjustment> adjustment = dialog->BuildAdjustment();
  ASSERT_TRUE(adjustment);
  EXPECT_EQ(adjustment->margin, 16u);
  EXPECT_EQ(adjustment->depth, 3u);
}

TEST_F(AdjustDialog, ResetEmptiesEverythingOnce) {
  Document().FunctionTable()->SetLibrarySize(Function("work"), 8);
  Function("work").extraCallees = {&Function("aim"), &Function("work")};
  SetInForce("work", 4, 2);
  OpenFor("work");
  Select(*callees, 2);
  Press("Reset");
  EXPECT_EQ(margin->text() + "|" + depth->text(), "8|");
  EXPECT_EQ(RowsOf(*callees), "leaf(3:3)\n");
  Press("OK");
  EXPECT_FALSE(dialog->BuildAdjustment());
  EXPECT_EQ(Function("work").extraCallees.size(), 2u);
}

}  // namespace
}  // namespace velkor::ui
