#pragma once

#include <QTreeView>
#include <functional>
#include <optional>

#include "document/document.h"
#include "ui/commands/command_target.h"
#include "ui/commands/frame_operations.h"
#include "ui/ui_context.h"
#include "ui/views/fitted_columns.h"
#include "ui/views/function_list_model.h"
#include "ui/views/function_order.h"
#include "ui/views/need_text.h"
#include "ui/views/node_record.h"

namespace velkor::ui {

class ArrowHeader;

// The function that is selected in the call tree and the functions that it calls, as a table that
// can be sorted by any column. The last two columns, of the bound, can be hidden. Refills itself on
// HINT_SELECTION, empties on HINT_CLEAR, ignores every other hint. Told of the document's changes
// from its creation to its destruction.
class CStkListView : public QTreeView, public View, public CommandTarget {
 public:
  // selectedRecord: the call tree's record of its selected node, or none.
  CStkListView(UiContext& context, FrameOperations& frame,
               std::function<const NodeRecord*()> selectedRecord, QWidget* parent = nullptr);
  ~CStkListView() override;

  // Of the selected row, or none.
  StkFunction* SelectedFunction() const;
  FittedColumns& Columns() { return *columns_; }

  void OnUpdate(ViewHint hint) override;
  std::optional<CommandState> StateOf(Command command) override;
  void Execute(Command command) override;
  // By the names, whichever column was clicked last.
  void keyboardSearch(const QString& search) override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

 private:
  void SetUp();
  void Enter(const QModelIndex& index);
  FunctionListModel::Need NeedOf(const StkFunction& function) const;
  void ShowMenu(const QPoint& position);
  void Clear();
  void Fill();
  // With toggling: the key that is in force already turns its direction round.
  void SortBy(SortKey key);
  bool CanSort() const;

  UiContext& context_;
  FrameOperations& frame_;
  std::function<const NodeRecord*()> selectedRecord_;
  NeedTexts needs_;
  FunctionListModel* model_;  // owned by the Qt parent, as is the header
  ArrowHeader* header_;
  FittedColumns* columns_ = nullptr;  // owned by the header
  std::optional<SortKey> sortKey_;
  bool descending_ = false;
};

}  // namespace velkor::ui
