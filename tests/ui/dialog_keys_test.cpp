#include <QLineEdit>
#include <QTest>

#include "main_window.h"
#include "ui/dialogs/adjust_dialog.h"
#include "ui/dialogs/function_lists_dialog.h"

namespace velkor::ui {
namespace {

class DialogKeys : public MainWindow {
 protected:
  DialogKeys() : MainWindow({"main 10 work", "work 4", "loop 6 loop ext", "aim 2"}) {
    StartAndFinish();
  }

  void Show(std::unique_ptr<QDialog> shown) {
    dialog = std::move(shown);
    dialog->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
  }
  void AdjustFor(const std::string& cName) {
    Show(std::make_unique<AdjustStackSizeDialog>(app->Context(), Function(cName), [](int) {}));
    margin = dialog->findChildren<QLineEdit*>()[2];
    depth = dialog->findChildren<QLineEdit*>()[3];
  }
  void OpenLists() {
    Show(std::make_unique<FunctionListsDialog>(app->Context(), app->Frame(), [](int) {}));
  }
  FunctionListBox& Box(int number) const {
    return *dialog->findChildren<FunctionListBox*>()[number];
  }
  QPushButton& AdjustSize() const { return Button(*dialog, "Adjust Size..."); }
  void Press(Qt::Key key, Qt::KeyboardModifiers held = Qt::NoModifier) const {
    QTest::keyClick(dialog->focusWidget(), key, held);
  }
  static bool LooksSelected(FunctionListBox& box, int row) {
    const QRect area = box.visualRect(box.model()->index(row, 0));
    const QPoint end(std::min(area.right(), box.viewport()->width()) - 2, area.center().y());
    return box.viewport()->grab().toImage().pixelColor(end) != box.palette().color(QPalette::Base);
  }

  std::unique_ptr<QDialog> dialog;
  QLineEdit* margin = nullptr;
  QLineEdit* depth = nullptr;
};

TEST_F(DialogKeys, MnemonicsActBeforeTheNextKey) {
  adjustAnswer = {true, StkAdjustment{}};
  adjustAnswer.adjustment->margin = 7;
  Choose(Command::kAdjustStackSize);
  Finish();
  AdjustFor("main");
  QTest::keyClicks(margin, "5");
  Press(Qt::Key_E, Qt::AltModifier);
  EXPECT_EQ(margin->text(), "");
  Select(Box(1), 0);
  Press(Qt::Key_A, Qt::AltModifier);
  Press(Qt::Key_Down);
  Press(Qt::Key_A, Qt::AltModifier);
  EXPECT_EQ(RowsOf(Box(0)), "work(4:4)\n+aim(2:2)\n+[ext](?:?)\n");
  Press(Qt::Key_Return);
  EXPECT_FALSE(dialog->isVisible());
}

TEST_F(DialogKeys, TheLetterOfADisabledControlIsNoText) {
  AdjustFor("main");
  margin->setText("5");
  for (const Qt::Key letter : {Qt::Key_A, Qt::Key_D, Qt::Key_E, Qt::Key_R}) {
    Press(letter, Qt::AltModifier);
  }
  EXPECT_EQ(margin->text(), "5");
  EXPECT_EQ(dialog->focusWidget(), margin);
}

TEST_F(DialogKeys, ADisabledDepthCanBePutRight) {
  AdjustFor("main");
  depth->setText("x");
  Press(Qt::Key_Return);
  EXPECT_EQ(BoxTexts(), "W9463 Illegal value (x) for recursion depth.|");
  EXPECT_EQ(dialog->focusWidget(), depth);
  Press(Qt::Key_Delete);
  Press(Qt::Key_Return);
  EXPECT_FALSE(dialog->isVisible());
  EXPECT_EQ(boxes.boxes.size(), 1U);
}

TEST_F(DialogKeys, ResetTakesTheRecursionBackToo) {
  StkAdjustment ring;
  ring.depth = 3;
  ring.SetCallees({&Function("main")}, host.codePage);
  Document().AdjustFunction(Function("main"), ring);
  Finish();
  AdjustFor("main");
  EXPECT_TRUE(depth->isEnabled());
  Press(Qt::Key_E, Qt::AltModifier);
  EXPECT_FALSE(depth->isEnabled());
}

TEST_F(DialogKeys, EnterAndDoubleClickAdjustTheRowThatLooksSelected) {
  StkAdjustment margin3;
  margin3.margin = 3;
  Document().AdjustFunction(Function("work"), margin3);
  Finish();
  OpenLists();
  EXPECT_FALSE(LooksSelected(Box(0), 0)) << "it has the keyboard only";
  Press(Qt::Key_Down);
  EXPECT_TRUE(LooksSelected(Box(0), 0));
  Press(Qt::Key_Return);
  Press(Qt::Key_Enter, Qt::KeypadModifier);
  Select(Box(1), 0);
  EXPECT_FALSE(LooksSelected(Box(0), 0));
  AdjustSize().setFocus();
  EXPECT_TRUE(LooksSelected(Box(1), 0)) << "the button takes it";
  Press(Qt::Key_Space);
  Select(Box(0), 1);
  QTest::mouseDClick(Box(0).viewport(), Qt::LeftButton, {},
                     {10, Box(0).visualRect(Box(0).model()->index(1, 0)).center().y()});
  EXPECT_EQ(adjusted, (std::vector<std::string>{"_ext", "_ext", "_work", "_loop"}));
  Box(2).setFocus();
  EXPECT_FALSE(AdjustSize().isEnabled());
  Press(Qt::Key_Return);
  EXPECT_FALSE(dialog->isVisible()) << "without a row it closes";
}

// A report reads the functions in its thread, until its end has been handled.
TEST_F(DialogKeys, DuringAReportNothingCanBeChanged) {
  dialogs.answers = {"C:\\p\\report.txt"};
  Choose(Command::kSaveAllChains);
  EXPECT_FALSE(IsEnabled(Command::kLoadSpecFile) || IsEnabled(Command::kAdjustStackSize));
  EXPECT_TRUE(IsEnabled(Command::kFunctionLists));
  dialog = std::make_unique<FunctionListsDialog>(app->Context(), app->Frame(), [](int) {});
  Box(0).setCurrentIndex(Box(0).model()->index(0, 0));
  EXPECT_FALSE(AdjustSize().isEnabled());
  EXPECT_TRUE(WaitUntil([this] { return AdjustSize().isEnabled(); }));
  EXPECT_TRUE(IsEnabled(Command::kLoadSpecFile));
}

}  // namespace
}  // namespace velkor::ui
