#include "ui/function_lists_dialog.h"

#include "core/recompute.h"
#include "dialog_window.h"
#include "ui/help_location.h"

namespace velkor {
namespace {

using testing::DialogWindow;
using testing::RecordingFrame;

// Answers the Adjust Stack Size dialog as the test says.
class AdjustingFrame : public RecordingFrame {
 public:
  bool AdjustStackSize(StkFunction& function) override {
    RecordingFrame::AdjustStackSize(function);
    return adjust(function);
  }
  std::function<bool(StkFunction&)> adjust;
};

class FunctionListsDialog : public DialogWindow {
 protected:
  FunctionListsDialog() : DialogWindow({"main 10 work", "loop 6 loop", "work 4"}) {}

  void OpenDialog() {
    dialog = std::make_unique<CFunctionListsDialog>(dialogContext, adjusting, showHelp);
    const QList<FunctionRows*> lists = dialog->findChildren<FunctionRows*>();
    unknown = lists[0];
    adjusted = lists[1];
    library = lists[2];
    Show(*dialog);
  }
  void Insert(const std::vector<std::string>& unknownNames) {
    for (const std::string& name : unknownNames) {
      document.FunctionTable()->AddUnknown(name);
    }
  }
  // With an unknown and a system library function.
  void OpenAnalysed() {
    Open();
    Insert({"_ext", "_lib"});
    StkFunctionTable& functions = *document.FunctionTable();
    functions.SetLibrarySize(Function("lib"), 8);
    Recompute(functions, *document.RootList(), true, nullptr, nullptr, recorder.reporter);
    OpenDialog();
  }
  std::string Lists() const {
    return "U:\n" + RowsOf(*unknown) + "A:\n" + RowsOf(*adjusted) + "L:\n" + RowsOf(*library);
  }
  bool CanAdjust() { return Button(*dialog, "Adjust Size...").isEnabled(); }
  void Adjust() { QTest::mouseClick(&Button(*dialog, "Adjust Size..."), Qt::LeftButton); }

  AdjustingFrame adjusting;
  std::unique_ptr<CFunctionListsDialog> dialog;
  FunctionRows* unknown = nullptr;
  FunctionRows* adjusted = nullptr;
  FunctionRows* library = nullptr;
};

TEST_F(FunctionListsDialog, MovesFunctionsBetweenItsLists) {
  OpenAnalysed();
  EXPECT_EQ(Lists(), "U:\n[ext](?:?)\nloop*(6:6)\nA:\nL:\n[lib](8:?:+8)\n");
  EXPECT_FALSE(CanAdjust());

  adjusting.adjust = [](StkFunction& function) {
    function.adjustment = std::make_unique<StkAppliedAdjustment>();
    function.adjustment->depth = 2;
    return true;
  };
  Select(*unknown, 1);
  EXPECT_TRUE(CanAdjust());
  Adjust();
  EXPECT_EQ(Lists(), "U:\n[ext](?:?)\nA:\nloop*(6:6:*2)\nL:\n[lib](8:?:+8)\n");
  EXPECT_FALSE(CanAdjust()) << "the selection went with the refill";
  EXPECT_EQ(dialog->focusWidget(), unknown);

  adjusting.adjust = [](StkFunction& function) {
    function.adjustment = std::make_unique<StkAppliedAdjustment>();
    function.adjustment->margin = 3;
    return true;
  };
  Select(*library, 0);
  Adjust();
  EXPECT_EQ(Lists(), "U:\n[ext](?:?)\nA:\n[lib](8:?:+3)\nloop*(6:6:*2)\nL:\n");
  EXPECT_EQ(dialog->focusWidget(), library);

  adjusting.adjust = [](StkFunction& function) {
    function.adjustment.reset();
    return true;
  };
  Select(*adjusted, 0);
  Adjust();
  EXPECT_EQ(Lists(), "U:\n[ext](?:?)\nA:\nloop*(6:6:*2)\nL:\n[lib](8:?:+8)\n");
  EXPECT_EQ(adjusting.calls,
            (std::vector<std::string>{"adjust _loop", "adjust _lib", "adjust _lib"}));
}

TEST_F(FunctionListsDialog, KeepsItsSelectionWhenNothingWasAdjusted) {
  OpenAnalysed();
  adjusting.adjust = [](StkFunction&) { return false; };
  Select(*unknown, 1);
  Adjust();
  EXPECT_EQ(RowsOf(*unknown), "[ext](?:?)\nloop*(6:6) <\n");
  EXPECT_TRUE(CanAdjust());
  EXPECT_EQ(dialog->focusWidget(), unknown);
}

TEST_F(FunctionListsDialog, TheListThatHasTheFocusDecidesTheButton) {
  OpenAnalysed();
  adjusting.adjust = [](StkFunction&) { return false; };
  Select(*unknown, 0);
  library->setFocus();
  EXPECT_FALSE(CanAdjust());
  Select(*library, 0);
  EXPECT_TRUE(CanAdjust());
  unknown->setFocus();
  EXPECT_TRUE(CanAdjust());
  Adjust();
  EXPECT_EQ(adjusting.calls, (std::vector<std::string>{"adjust _ext"}));
}

TEST_F(FunctionListsDialog, ShowsHelpAndGoesBackToItsList) {
  OpenAnalysed();
  Select(*library, 0);
  QTest::mouseClick(&Button(*dialog, "Help"), Qt::LeftButton);
  EXPECT_EQ(dialog->focusWidget(), library);
  QTest::keyClick(dialog.get(), Qt::Key_F1);
  EXPECT_EQ(helpTopics, (std::vector<int>{kFunctionListsHelp, kFunctionListsHelp}));
  EXPECT_EQ(dialog->windowTitle(), "Stack Size Unknown / Adjusted Function Lists");
  QTest::mouseClick(&Button(*dialog, "Close"), Qt::LeftButton);
  EXPECT_FALSE(dialog->isVisible());
}

TEST_F(FunctionListsDialog, StaysEmptyWhenEverythingIsKnown) {
  Open();
  StkFunctionTable& functions = *document.FunctionTable();
  for (const auto& function : functions.Functions()) {
    function->flags = FN_DEFINED | FN_GLOBAL;
  }
  OpenDialog();
  EXPECT_EQ(Lists(), "U:\nA:\nL:\n");
  EXPECT_FALSE(CanAdjust());
  unknown->setFocus();
  EXPECT_FALSE(CanAdjust());
}

// The rows stand in the order of the names in the modules, not of the names shown.
TEST_F(FunctionListsDialog, SortsByStoredNames) {
  Open();
  Insert({"_b", "a", "_B", "@@help"});
  OpenDialog();
  EXPECT_EQ(RowsOf(*unknown), "[@@help](?:?)\n[B](?:?)\n[b](?:?)\nloop*(6:6)\n[a](?:?)\n");
}

}  // namespace
}  // namespace velkor
