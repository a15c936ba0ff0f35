#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QTableView>
#include <optional>

#include "document/document.h"
#include "ui/commands/command_target.h"
#include "ui/commands/frame_operations.h"
#include "ui/sliced_work.h"
#include "ui/ui_context.h"
#include "ui/views/fitted_columns.h"
#include "ui/views/function_ordering.h"
#include "ui/views/row_texts.h"

namespace velkor::ui {

class AllFunctionsModel;

// Every function of the analysis in one table that is sorted by any column and filtered by the text
// above it: the place where functions are found, too. Works in slices, and only while it is seen.
// Told of the document's changes from its creation to its destruction.
class AllFunctionsView : public QWidget, public View, public CommandTarget {
 public:
  AllFunctionsView(UiContext& context, FrameOperations& frame, QWidget* parent = nullptr);
  ~AllFunctionsView() override;

  // The text to filter by gets the keyboard.
  void StartFind();
  // Whether there is a text to go on finding.
  bool HasText() const { return !text_->text().isEmpty(); }
  // The next of the rows, or the one before, is selected here and in the call tree; after the last
  // comes the first.
  void GoOn(int step);
  // Of the row with the keyboard, or none.
  StkFunction* SelectedFunction() const;

  void OnUpdate(ViewHint hint) override;
  std::optional<CommandState> StateOf(Command command) override;
  void Execute(Command command) override;

  QTableView& Table() { return *table_; }
  FittedColumns& Columns() { return *columns_; }
  QLineEdit& Text() { return *text_; }
  // Rows that are still being sorted or filtered, or texts being copied.
  bool IsWorking() const { return work_.IsRunning() || copying_.IsRunning(); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void SetUpTable();
  void FitRows();
  void Clear();
  void Order();
  void Filter();
  void TakeRows(std::vector<uint32_t> rows);
  // The cell that is sorted by already turns its direction round.
  void SortBy(FunctionCell cell);
  void Select(int row);
  void Go();
  void ShowSelected();
  void Copy(RowTexts::Form form);
  bool OnTextKey(const QKeyEvent& press);
  bool OnTableKey(const QKeyEvent& press);
  void ShowMenu(const QPoint& position);

  UiContext& context_;
  FrameOperations& frame_;
  // Owned by their Qt parents.
  QLineEdit* text_;
  QLabel* count_;
  QTableView* table_;
  AllFunctionsModel* model_;
  FittedColumns* columns_ = nullptr;
  FunctionOrderBy by_;
  bool isStale_ = true;          // what is shown is not of the analysis as it is
  std::vector<uint32_t> order_;  // all functions, as they are sorted
  bool isOrdered_ = false;
  std::optional<uint32_t> kept_;   // the function to be selected in new rows
  std::optional<uint32_t> shown_;  // the function that was last shown in the call tree
  std::function<void()> then_;     // once the rows are there
  SlicedWork work_;
  SlicedWork copying_;
};

}  // namespace velkor::ui
