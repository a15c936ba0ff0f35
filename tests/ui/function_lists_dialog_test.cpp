#include "ui/dialogs/function_lists_dialog.h"

#include <QTest>

#include "core/function_sorting.h"
#include "core/recompute.h"
#include "main_window.h"

namespace velkor::ui {
namespace {

class ListsDialog : public MainWindow {
 protected:
  ListsDialog() : MainWindow({"main 10 work", "loop 6 loop", "work 4", "B 1"}) {}

  // With unknown functions and one of the system library.
  void Open() {
    StartAndFinish();
    StkFunctionTable& functions = *Document().FunctionTable();
    for (const char* name : {"_ext", "_lib", "a", "_E", "@@help"}) {
      functions.AddUnknown(name);
    }
    functions.SetLibrarySize(Function("lib"), 8);
    Recompute(functions, *Document().RootList(), true, nullptr, nullptr, app->Context().reporter);
    dialog = std::make_unique<FunctionListsDialog>(app->Context(), app->Frame(), [](int) {});
    const QList<FunctionListBox*> lists = dialog->findChildren<FunctionListBox*>();
    unknown = lists[0];
    adjusted = lists[1];
    library = lists[2];
    dialog->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
  }
  std::string Lists() const {
    return "U:\n" + RowsOf(*unknown) + "A:\n" + RowsOf(*adjusted) + "L:\n" + RowsOf(*library);
  }
  void Adjust(std::optional<StkAdjustment> adjustment) {
    adjustAnswer = {true, std::move(adjustment)};
    QTest::mouseClick(&Button(*dialog, "Adjust Size..."), Qt::LeftButton);
    Finish();
  }

  std::unique_ptr<FunctionListsDialog> dialog;
  FunctionListBox* unknown = nullptr;
  FunctionListBox* adjusted = nullptr;
  FunctionListBox* library = nullptr;
};

// The rows stand in the order of the names in the modules, not of the names shown.
TEST_F(ListsDialog, MovesFunctionsBetweenItsLists) {
  Open();
  const std::string others = "U:\n[@@help](?:?)\n[E](?:?)\n[ext](?:?)\n";
  EXPECT_EQ(Lists(), others + "loop*(6:6)\n[a](?:?)\nA:\nL:\n[lib](8:?:+8)\n");

  StkAdjustment depth;
  depth.depth = 2;
  Select(*unknown, 3);
  Adjust(depth);
  EXPECT_EQ(Lists(), others + "[a](?:?)\nA:\nloop*(12:6:*2)\nL:\n[lib](8:?:+8)\n");

  StkAdjustment margin;
  margin.margin = 3;
  Select(*library, 0);
  Adjust(margin);
  EXPECT_EQ(Lists(), others + "[a](?:?)\nA:\n[lib](3:?:+3)\nloop*(12:6:*2)\nL:\n");

  Select(*adjusted, 0);
  Adjust(std::nullopt);
  EXPECT_EQ(Lists(), others + "[a](?:?)\nA:\nloop*(12:6:*2)\nL:\n[lib](8:?:+8)\n");
}

// So many are put in order in steps between which the window answers.
TEST(FunctionListBox, ManyRowsComeWhenTheyAreInOrder) {
  const CodePage codePage = CodePage::Utf8();
  StkFunctionTable table(codePage);
  for (int i = 0; i < 50000; ++i) {
    table.AddUnknown("_" + std::to_string(i * 7919 % 40009) + "_" + std::to_string(i % 10));
  }
  FunctionListBox rows(codePage);
  StkFunctionList sorted = table.Functions();
  rows.SetFunctionsByName(sorted);
  EXPECT_EQ(rows.Rows().rowCount(), 0);
  sorted.resize(40010);             // the first and the last begin as no other
  rows.SetFunctionsByName(sorted);  // others take the place of those that are being sorted
  ASSERT_TRUE(QTest::qWaitFor([&rows] { return rows.Rows().rowCount() > 0; }, 30000));
  SortByName(sorted, codePage);
  for (size_t row = 0; row < sorted.size(); ++row) {
    ASSERT_EQ(rows.Rows().FunctionAt(static_cast<int>(row)), sorted[row]);
  }
}

}  // namespace
}  // namespace velkor::ui
