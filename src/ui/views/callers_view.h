#pragma once

#include <QTreeView>
#include <memory>
#include <optional>

#include "document/document.h"
#include "ui/commands/command_target.h"
#include "ui/commands/frame_operations.h"
#include "ui/navigation/caller_index.h"
#include "ui/sliced_work.h"
#include "ui/ui_context.h"
#include "ui/views/fitted_columns.h"

namespace velkor::ui {

class CallersModel;

// Who calls a function, and who calls those, up to the top level. Finds the callers in slices. Told
// of the document's changes from its creation to its destruction.
class CallersView : public QTreeView, public View, public CommandTarget {
 public:
  CallersView(UiContext& context, FrameOperations& frame, QWidget* parent = nullptr);
  ~CallersView() override;

  // A little later in a large analysis.
  void Show(StkFunction& function);
  // Of the selected row, or none.
  StkFunction* SelectedFunction() const;

  FittedColumns& Columns() { return *columns_; }

  void OnUpdate(ViewHint hint) override;
  std::optional<CommandState> StateOf(Command command) override;
  void Execute(Command command) override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

 private:
  void SetUp();
  void FindCallers();
  void ShowWanted();
  void Forget();
  void Go();

  UiContext& context_;
  FrameOperations& frame_;
  CallersModel* model_;               // owned by the Qt parent
  FittedColumns* columns_ = nullptr;  // owned by the header
  std::unique_ptr<CallerIndex> callers_;
  bool callersAreKnown_ = false;
  StkFunction* shown_ = nullptr;  // at the top, as soon as the callers are known
  SlicedWork work_;
};

}  // namespace velkor::ui
