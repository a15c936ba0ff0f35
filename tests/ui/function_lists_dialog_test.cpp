#include "ui/function_lists_dialog.h"

#include <QTest>

#include "core/recompute.h"
#include "main_window.h"

namespace velkor {
namespace {

using testing::MainWindow;

class FunctionListsDialog : public MainWindow {
 protected:
  FunctionListsDialog() : MainWindow({"main 10 work", "loop 6 loop", "work 4", "B 1"}) {}

  // With unknown functions and one of the system library.
  void Open() {
    StartAndFinish();
    StkFunctionTable& functions = *Document().FunctionTable();
    for (const char* name : {"_ext", "_lib", "a", "_E", "@@help"}) {
      functions.AddUnknown(name);
    }
    functions.SetLibrarySize(Function("lib"), 8);
    Recompute(functions, *Document().RootList(), true, nullptr, nullptr, app->Context().reporter);
    dialog = std::make_unique<CFunctionListsDialog>(app->Context(), app->Frame(), showHelp);
    const QList<FunctionRows*> lists = dialog->findChildren<FunctionRows*>();
    unknown = lists[0];
    adjusted = lists[1];
    library = lists[2];
    dialog->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
  }
  std::string Lists() const {
    return "U:\n" + RowsOf(*unknown) + "A:\n" + RowsOf(*adjusted) + "L:\n" + RowsOf(*library);
  }
  bool CanAdjust() { return Button(*dialog, "Adjust Size...").isEnabled(); }
  void Adjust(std::optional<StkAdjustment> adjustment) {
    adjustAnswer = {true, std::move(adjustment)};
    QTest::mouseClick(&Button(*dialog, "Adjust Size..."), Qt::LeftButton);
    Finish();
  }

  std::unique_ptr<CFunctionListsDialog> dialog;
  FunctionRows* unknown = nullptr;
  FunctionRows* adjusted = nullptr;
  FunctionRows* library = nullptr;
};

// The rows stand in the order of the names in the modules, not of the names shown.
TEST_F(FunctionListsDialog, MovesFunctionsBetweenItsLists) {
  Open();
  const std::string others = "U:\n[@@help](?:?)\n[E](?:?)\n[ext](?:?)\n";
  EXPECT_EQ(Lists(), others + "loop*(6:6)\n[a](?:?)\nA:\nL:\n[lib](8:?:+8)\n");
  EXPECT_FALSE(CanAdjust());

  StkAdjustment depth;
  depth.depth = 2;
  Select(*unknown, 3);
  EXPECT_TRUE(CanAdjust());
  Adjust(depth);
  EXPECT_EQ(Lists(), others + "[a](?:?)\nA:\nloop*(12:6:*2)\nL:\n[lib](8:?:+8)\n");
  EXPECT_FALSE(CanAdjust()) << "the selection went with the refill";
  EXPECT_EQ(dialog->focusWidget(), unknown);

  StkAdjustment margin;
  margin.margin = 3;
  Select(*library, 0);
  Adjust(margin);
  EXPECT_EQ(Lists(), others + "[a](?:?)\nA:\n[lib](3:?:+3)\nloop*(12:6:*2)\nL:\n");

  Select(*adjusted, 0);
  Adjust(std::nullopt);
  EXPECT_EQ(Lists(), others + "[a](?:?)\nA:\nloop*(12:6:*2)\nL:\n[lib](8:?:+8)\n");
}

TEST_F(FunctionListsDialog, TheListThatHasTheFocusDecidesTheButton) {
  Open();
  Select(*unknown, 2);
  library->setFocus();
  EXPECT_FALSE(CanAdjust());
  Select(*library, 0);
  EXPECT_TRUE(CanAdjust());
  unknown->setFocus();
  QTest::mouseClick(&Button(*dialog, "Adjust Size..."), Qt::LeftButton);
  EXPECT_EQ(windows, std::vector<std::string>{"adjust _ext"});
  EXPECT_NE(RowsOf(*unknown).find("[ext](?:?) <"), std::string::npos) << "nothing was adjusted";
  EXPECT_EQ(dialog->focusWidget(), unknown);
}

TEST_F(FunctionListsDialog, ShowsHelpAndGoesBackToItsList) {
  Open();
  Select(*library, 0);
  QTest::mouseClick(&Button(*dialog, "Help"), Qt::LeftButton);
  EXPECT_EQ(dialog->focusWidget(), library);
  QTest::keyClick(dialog.get(), Qt::Key_F1);
  EXPECT_EQ(windows, (std::vector<std::string>{"help 2", "help 2"}));
  QTest::mouseClick(&Button(*dialog, "Close"), Qt::LeftButton);
  EXPECT_FALSE(dialog->isVisible());
}

}  // namespace
}  // namespace velkor
