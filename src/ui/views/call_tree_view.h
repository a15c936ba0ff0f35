#pragma once

#include <QPersistentModelIndex>
#include <QTimer>
#include <QTreeView>
#include <optional>
#include <vector>

#include "document/document.h"
#include "ui/commands/command_target.h"
#include "ui/commands/frame_operations.h"
#include "ui/ui_context.h"
#include "ui/views/call_tree_model.h"
#include "ui/views/chain_opening.h"
#include "ui/views/need_text.h"
#include "ui/views/node_record.h"

namespace velkor::ui {

// The call graph below the top-level functions of the document. Its selection drives the function
// list: every change sets the document's current selection and then tells all other views with
// HINT_SELECTION. Behind the names stand totals, and what of the bounds they do not say. After an
// analysis the entry that takes the most is selected. A right click selects nothing, but the
// command chosen from its menu acts on the node under the pointer, which looks selected as long as
// the menu is open. Told of the document's changes from its creation to its destruction.
class CStkTreeView : public QTreeView, public View, public CommandTarget {
 public:
  CStkTreeView(UiContext& context, FrameOperations& frame, QWidget* parent = nullptr);
  ~CStkTreeView() override;

  // Of the selected node, or none. Valid until the selection changes next.
  const NodeRecord* SelectedRecord() const;

  // The functions from the top level down to the selected node; empty: none is selected.
  StkFunctionList SelectedWay() const;
  // Selects the node to which the way leads, opening the branches above it. False when there is no
  // such node, or it stands deeper than kDeepest.
  bool ShowWay(const StkFunctionList& way);
  static constexpr size_t kDeepest = 4096;
  // Selects a node for the function. Of the top level; or below it, along a path of callees from
  // there, which is opened as far as the tree has it. Nothing while a job has the functions.
  void ShowEntry(const StkFunction& function);
  void ShowPath(std::vector<const StkFunction*> path);

  void OnUpdate(ViewHint hint) override;
  // Both take the target: after either, the node of the last right click is forgotten.
  std::optional<CommandState> StateOf(Command command) override;
  void Execute(Command command) override;
  // Sideways too, so that the node's icon and name are seen.
  void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

 protected:
  void contextMenuEvent(QContextMenuEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
  void drawRow(QPainter* painter, const QStyleOptionViewItem& options,
               const QModelIndex& index) const override;
  void drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const override;

 private:
  void SetUp();
  QModelIndex SelectedIndex() const;
  StkFunction* TakeTarget();
  const StkFunctionList& Roots() const;
  bool IsBusy() const;
  void Clear();
  void Fill();
  void RefreshMarks();
  void Rebuild();
  QModelIndex LargestEntry() const;
  QString BehindName(const StkFunction& function) const;
  std::optional<CommandState> StateOfTree(Command command) const;
  void ExecuteOfTree(Command command);
  void ShowTotals(bool shown);
  void SetOrder(TreeOrder order);
  void OpenMaximumChain();
  void ScrollToChain(const QModelIndex& first, const QModelIndex& last);
  void Select(const QModelIndex& index);
  void AnnounceSelection();
  void SelectVisibleAncestor(const QModelIndex& collapsed);
  void ScrollToChildren(const QModelIndex& index);
  void GrowColumn();
  void GrowColumnTo(int width);
  void ShowMenu(const QModelIndex& index, const QPoint& position);
  void SetMenuNode(const QModelIndex& index);

  UiContext& context_;
  FrameOperations& frame_;
  CallTreeModel* model_;  // owned by the Qt parent, as is the next
  ChainOpening* opening_;
  NeedTexts needs_;
  TreeOrder order_ = TreeOrder::kModule;
  bool totalsShown_ = true;
  QPersistentModelIndex rightClickNode_;
  QPersistentModelIndex menuNode_;  // of the menu that is open
  bool rebuilding_ = false;         // selections on the way are not announced
  QTimer announceLater_;            // runs while a job changes the functions
};

}  // namespace velkor::ui
