#include "ui/views/call_tree_view.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>

#include "ui/commands/context_menu.h"
#include "ui/commands/function_commands.h"
#include "ui/views/accessible_texts.h"
#include "ui/views/branch_lines.h"
#include "ui/views/function_icons.h"
#include "ui/views/name_delegate.h"
#include "ui/wait_cursor.h"

namespace velkor::ui {

namespace {

constexpr int kAnnounceAgainMilliseconds = 50;

const StkFunctionList& NoFunctions() {
  static const StkFunctionList kNone;
  return kNone;
}

}  // namespace

CStkTreeView::CStkTreeView(UiContext& context, FrameOperations& frame, QWidget* parent)
    : QTreeView(parent),
      context_(context),
      frame_(frame),
      model_(new CallTreeModel(context.host.codePage, KindsFrom(context),
                               [this] { return IsBusy(); })),
      opening_(new ChainOpening(*this)),
      needs_(context) {
  model_->setParent(this);
  SetUp();
  context_.document.AddView(*this);
}

CStkTreeView::~CStkTreeView() {
  context_.document.RemoveView(*this);
}

void CStkTreeView::SetUp() {
  setModel(model_);
  setItemDelegate(new NameDelegate(this));
  ShowTotals(totalsShown_);
  setHeaderHidden(true);
  setUniformRowHeights(true);
  setSelectionMode(SingleSelection);
  setEditTriggers(NoEditTriggers);
  setIconSize(kTreeIconSize);
  setAccessibleName(context_.Text(kCallTreeNameKey));
  header()->setStretchLastSection(true);
  header()->setMinimumSectionSize(0);
  header()->setResizeContentsPrecision(0);
  connect(this, &QTreeView::collapsed, this,
          [this](const QModelIndex& index) { SelectVisibleAncestor(index); });
  connect(this, &QTreeView::expanded, this, [this](const QModelIndex& index) {
    if (!rebuilding_ && !opening_->IsRunning()) {
      ScrollToChildren(index);
      GrowColumn();
    }
  });
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { GrowColumn(); });
  announceLater_.setInterval(kAnnounceAgainMilliseconds);
  announceLater_.setSingleShot(true);
  connect(&announceLater_, &QTimer::timeout, this, [this] { AnnounceSelection(); });
}

const NodeRecord* CStkTreeView::SelectedRecord() const {
  const QModelIndex index = SelectedIndex();
  return index.isValid() ? &model_->RecordOf(index) : nullptr;
}

StkFunctionList CStkTreeView::SelectedWay() const {
  StkFunctionList way;
  for (QModelIndex index = SelectedIndex(); index.isValid(); index = index.parent()) {
    way.push_back(&model_->FunctionOf(index));
  }
  std::reverse(way.begin(), way.end());
  return way;
}

// The toolkit lays opened branches out by recursion, hence a deepest one; all of them at once,
// hence the delay.
bool CStkTreeView::ShowWay(const StkFunctionList& way) {
  if (way.empty() || way.size() > kDeepest || IsBusy()) {
    return false;
  }
  const WaitCursor waiting;
  QModelIndexList nodes;
  nodes.reserve(static_cast<qsizetype>(way.size()));
  for (const StkFunction* function : way) {
    nodes.push_back(model_->ChildFor(*function, nodes.empty() ? QModelIndex() : nodes.back()));
    if (!nodes.back().isValid()) {
      return false;
    }
  }
  const QModelIndex last = nodes.takeLast();
  rebuilding_ = true;
  scheduleDelayedItemsLayout();
  for (const QModelIndex& node : nodes) {
    expand(node);
  }
  executeDelayedItemsLayout();
  rebuilding_ = false;
  setCurrentIndex(last);
  scrollTo(last);
  return true;
}

void CStkTreeView::OnUpdate(ViewHint hint) {
  const WaitCursor waiting;
  if (hint == HINT_CLEAR || hint == HINT_RESULTS || hint == HINT_STRUCTURE) {
    opening_->Stop();
  }
  switch (hint) {
    case HINT_CLEAR:
      return Clear();
    case HINT_RESULTS:
      return Fill();
    case HINT_STRUCTURE:
      return Rebuild();
    case HINT_SIZES:
      return RefreshMarks();
    case HINT_SELECTION:
    case HINT_SAVED:
      return;
  }
}

std::optional<CommandState> CStkTreeView::StateOf(Command command) {
  if (const std::optional<CommandState> state = StateOfTree(command)) {
    return state;
  }
  return FunctionCommandState(command, TakeTarget(), context_.document);
}

void CStkTreeView::Execute(Command command) {
  if (StateOfTree(command)) {
    ExecuteOfTree(command);
    return;
  }
  ExecuteFunctionCommand(command, TakeTarget(), frame_);
}

void CStkTreeView::contextMenuEvent(QContextMenuEvent* event) {
  event->accept();
  if (event->reason() == QContextMenuEvent::Mouse) {
    ShowMenu(indexAt(event->pos()), event->globalPos());
    return;
  }
  const QModelIndex index = SelectedIndex();
  if (index.isValid()) {
    scrollTo(index);
    const QPoint below = visualRect(index).bottomLeft();
    ShowMenu(index, viewport()->mapToGlobal(QPoint(std::max(0, below.x()), below.y())));
  }
}

// Only the left button selects and expands.
void CStkTreeView::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    QTreeView::mousePressEvent(event);
  }
}

void CStkTreeView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    QTreeView::mouseDoubleClickEvent(event);
  }
}

void CStkTreeView::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Asterisk) {
    // Not the whole branch: a call graph has more paths than memory holds.
    expand(currentIndex());
    event->accept();
    return;
  }
  QTreeView::keyPressEvent(event);
}

QItemSelectionModel::SelectionFlags CStkTreeView::selectionCommand(const QModelIndex& index,
                                                                   const QEvent* event) const {
  const QItemSelectionModel::SelectionFlags command = QTreeView::selectionCommand(index, event);
  // A node stays selected until another one is.
  const bool selectsNone = !index.isValid() || command.testFlag(QItemSelectionModel::Deselect);
  return selectsNone ? QItemSelectionModel::NoUpdate : command;
}

void CStkTreeView::selectionChanged(const QItemSelection& selected,
                                    const QItemSelection& deselected) {
  QTreeView::selectionChanged(selected, deselected);
  if (!rebuilding_) {
    AnnounceSelection();
  }
}

void CStkTreeView::drawRow(QPainter* painter, const QStyleOptionViewItem& options,
                           const QModelIndex& index) const {
  QStyleOptionViewItem row = options;
  if (index == menuNode_) {
    row.state |= QStyle::State_Selected;
  } else if (menuNode_.isValid()) {
    row.palette.setColor(QPalette::Highlight, row.palette.color(QPalette::Base));
    row.palette.setColor(QPalette::HighlightedText, row.palette.color(QPalette::Text));
  }
  QTreeView::drawRow(painter, row, index);
}

void CStkTreeView::drawBranches(QPainter* painter, const QRect& rect,
                                const QModelIndex& index) const {
  painter->save();
  painter->setPen(QPen(palette().color(QPalette::Mid), 1, Qt::DotLine));
  DrawBranchLines(*painter, rect, index, indentation());
  painter->restore();
  QTreeView::drawBranches(painter, rect, index);
}

QModelIndex CStkTreeView::SelectedIndex() const {
  const QModelIndexList selected = selectionModel()->selectedIndexes();
  return selected.empty() ? QModelIndex() : selected.front();
}

StkFunction* CStkTreeView::TakeTarget() {
  const QModelIndex target =
      rightClickNode_.isValid() ? QModelIndex(rightClickNode_) : SelectedIndex();
  rightClickNode_ = QModelIndex();
  return target.isValid() ? &model_->FunctionOf(target) : nullptr;
}

const StkFunctionList& CStkTreeView::Roots() const {
  const StkRootList* roots = context_.document.RootList();
  return roots ? roots->Functions() : NoFunctions();
}

bool CStkTreeView::IsBusy() const {
  return context_.document.BelongsToJob();
}

void CStkTreeView::Clear() {
  const bool wasSelected = SelectedIndex().isValid();
  rightClickNode_ = QModelIndex();
  model_->Clear();
  if (wasSelected) {
    AnnounceSelection();
  }
}

void CStkTreeView::Fill() {
  const bool wasSelected = SelectedIndex().isValid();
  header()->setMinimumSectionSize(0);
  model_->Fill(Roots());
  const QModelIndex largest = LargestEntry();
  if (largest.isValid()) {
    Select(largest);
    AnnounceSelection();
  } else if (wasSelected) {
    AnnounceSelection();
  }
}

void CStkTreeView::RefreshMarks() {
  model_->RefreshMarks();
  viewport()->update();
  AnnounceSelection();
}

void CStkTreeView::Rebuild() {
  const bool wasSelected = SelectedIndex().isValid();
  const CallTreePaths saved =
      model_->Save([this](const QModelIndex& index) { return isExpanded(index); }, SelectedIndex());
  const CallTreeModel::Restored restored = model_->Rebuild(Roots(), saved);
  rebuilding_ = true;
  for (const QModelIndex& index : restored.expanded) {
    expand(index);
  }
  rebuilding_ = false;
  const QModelIndex selected =
      restored.selected.isValid() ? restored.selected : model_->index(0, 0);
  if (selected.isValid()) {
    Select(selected);
  }
  if (selected.isValid() || wasSelected) {
    AnnounceSelection();
  }
}

// Without announcing it.
void CStkTreeView::Select(const QModelIndex& index) {
  rebuilding_ = true;
  setCurrentIndex(index);
  rebuilding_ = false;
  GrowColumn();
}

void CStkTreeView::AnnounceSelection() {
  if (SelectedIndex().isValid() && IsBusy()) {
    announceLater_.start();
    return;
  }
  announceLater_.stop();
  const NodeRecord* record = SelectedRecord();
  context_.document.SetCurrentSelection(record ? record->function : nullptr);
  context_.document.UpdateAllViews(this, HINT_SELECTION);
  frame_.UpdateCommands();
}

// A selection that its branch has hidden would be acted on unseen.
void CStkTreeView::SelectVisibleAncestor(const QModelIndex& collapsed) {
  QModelIndex above = SelectedIndex().parent();
  while (above.isValid() && above != collapsed) {
    above = above.parent();
  }
  if (above.isValid()) {
    setCurrentIndex(collapsed);
  }
}

// As many of them as fit below the node.
void CStkTreeView::ScrollToChildren(const QModelIndex& index) {
  const int fitting = viewport()->height() / std::max(1, rowHeight(index)) - 1;
  const int last = std::min(model_->rowCount(index), fitting) - 1;
  if (last >= 0) {
    scrollTo(model_->index(last, 0, index));
    scrollTo(index);
  }
}

void CStkTreeView::scrollTo(const QModelIndex& index, ScrollHint hint) {
  QTreeView::scrollTo(index, hint);
  const QRect row = visualRect(index);
  if (!row.isValid()) {
    return;
  }
  QScrollBar& bar = *horizontalScrollBar();
  const int left = row.left() + bar.value();
  const int width = sizeHintForIndex(index).width();
  GrowColumnTo(left + width);
  const int most = viewport()->width();
  const int first = left + std::min(width, most) - most;
  bar.setValue(std::clamp(bar.value(), first, std::max(first, left - indentation())));
}

// The column is as wide as the widest row that has been on the screen, so that all of it can be
// scrolled to; finding the widest of all rows would take the texts of all.
void CStkTreeView::GrowColumn() {
  if (!rebuilding_) {
    GrowColumnTo(sizeHintForColumn(0));
  }
}

void CStkTreeView::GrowColumnTo(int width) {
  if (width > header()->minimumSectionSize()) {
    header()->setMinimumSectionSize(width);
    updateGeometries();  // the scroll bar, now
  }
}

void CStkTreeView::ShowMenu(const QModelIndex& index, const QPoint& position) {
  if (!index.isValid()) {
    return;
  }
  rightClickNode_ = index;
  SetMenuNode(index);
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  const QPersistentModelIndex node = index;
  AddCommands(
      *menu, context_, {Command::kAdjustStackSize},
      [this, node](Command command) {
        return FunctionCommandState(command, &model_->FunctionOf(node), context_.document)
            .value_or(CommandState());
      },
      [this, node](Command command) {
        // Enabling checks may have taken the target while the menu was open.
        if (node.isValid()) {
          rightClickNode_ = node;
          Execute(command);
        }
      });
  // A menu that is dismissed leaves nothing behind for the next command to act on by surprise.
  connect(menu, &QMenu::aboutToHide, this, [this] {
    rightClickNode_ = QModelIndex();
    SetMenuNode({});
  });
  menu->popup(position);
}

void CStkTreeView::SetMenuNode(const QModelIndex& index) {
  menuNode_ = index;
  viewport()->update();
}

}  // namespace velkor::ui
