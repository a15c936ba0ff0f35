#include "ui/views/function_list_view.h"

#include <QContextMenuEvent>
#include <algorithm>

#include "ui/commands/context_menu.h"
#include "ui/commands/function_commands.h"
#include "ui/views/accessible_texts.h"
#include "ui/views/arrow_header.h"
#include "ui/views/function_icons.h"
#include "ui/views/row_selection.h"
#include "ui/wait_cursor.h"

namespace velkor::ui {

namespace {

constexpr uint32_t kHeaderTextKey = 35000;
constexpr uint32_t kBoundHeaderKey =
    kDialogTextKey * 510 + 11;  // the last two, one after the other
constexpr int kColumnWidths[] = {100, 80, 80, 80, 300, 80, 160};

struct SortCommand {
  Command command;
  SortKey key;
};

constexpr SortCommand kSortKeys[] = {
    {Command::kSortByName, SortKey::kName},   {Command::kSortByTotal, SortKey::kTotal},
    {Command::kSortByFrame, SortKey::kFrame}, {Command::kSortByMargin, SortKey::kMargin},
    {Command::kSortByFile, SortKey::kFile},   {Command::kSortByIcon, SortKey::kIcon},
};

std::optional<SortKey> SortKeyOf(Command command) {
  for (const SortCommand& entry : kSortKeys) {
    if (entry.command == command) {
      return entry.key;
    }
  }
  return std::nullopt;
}

struct ColumnKey {
  int column;
  SortKey key;
};

// A click on the header of a column sorts by its key.
constexpr ColumnKey kColumnKeys[] = {
    {FunctionListModel::kFunction, SortKey::kName}, {FunctionListModel::kTotal, SortKey::kTotal},
    {FunctionListModel::kFrame, SortKey::kFrame},   {FunctionListModel::kMargin, SortKey::kMargin},
    {FunctionListModel::kFile, SortKey::kFile},     {FunctionListModel::kBound, SortKey::kBound},
    {FunctionListModel::kMark, SortKey::kMark},
};

int ArrowColumn(SortKey key) {
  const auto* const found = std::ranges::find(kColumnKeys, key, &ColumnKey::key);
  return found == std::end(kColumnKeys) ? 0 : found->column;
}

std::optional<int> ShownColumnOf(Command command) {
  switch (command) {
    case Command::kShowBoundColumn:
      return FunctionListModel::kBound;
    case Command::kShowMarkColumn:
      return FunctionListModel::kMark;
    default:
      return std::nullopt;
  }
}

std::array<QString, FunctionListModel::kColumnCount> Headers(const UiContext& context) {
  std::array<QString, FunctionListModel::kColumnCount> headers;
  for (uint32_t column = 0; column < headers.size(); ++column) {
    headers[column] = context.Text(column < FunctionListModel::kBound
                                       ? kHeaderTextKey + column
                                       : kBoundHeaderKey + column - FunctionListModel::kBound);
  }
  return headers;
}

}  // namespace

CStkListView::CStkListView(UiContext& context, FrameOperations& frame,
                           std::function<const NodeRecord*()> selectedRecord, QWidget* parent)
    : QTreeView(parent),
      context_(context),
      frame_(frame),
      selectedRecord_(std::move(selectedRecord)),
      needs_(context),
      model_(
          new FunctionListModel(context.host.codePage, Headers(context), KindsFrom(context),
                                [this](const StkFunction& function) { return NeedOf(function); })),
      header_(new ArrowHeader(this)) {
  model_->setParent(this);
  SetUp();
  context_.document.AddView(*this);
}

CStkListView::~CStkListView() {
  context_.document.RemoveView(*this);
}

void CStkListView::SetUp() {
  setHeader(header_);
  setModel(model_);
  setRootIsDecorated(false);
  setItemsExpandable(false);
  setUniformRowHeights(true);
  setItemDelegate(new SelectedRowDelegate(this));
  setSelectionMode(SingleSelection);
  setSelectionBehavior(SelectRows);
  setEditTriggers(NoEditTriggers);
  setIconSize(kListIconSize);
  setAccessibleName(context_.Text(kFunctionListNameKey));
  // A list without the focus shows no selection.
  QPalette colors = palette();
  colors.setColor(QPalette::Inactive, QPalette::Highlight, colors.color(QPalette::Base));
  colors.setColor(QPalette::Inactive, QPalette::HighlightedText, colors.color(QPalette::Text));
  setPalette(colors);
  header_->setSectionsClickable(true);  // a tree view without sorting of its own turns this off
  header_->setStretchLastSection(false);
  for (int column = 0; column < FunctionListModel::kColumnCount; ++column) {
    setColumnWidth(column, std::max(kColumnWidths[column], header_->sectionSizeHint(column)));
  }
  const auto fitted = [](int index, bool byContent = false) {
    return FittedColumns::Column{index, kColumnWidths[index], byContent};
  };
  columns_ =
      new FittedColumns(*this, *header_, fitted(FunctionListModel::kFunction, true),
                        {fitted(FunctionListModel::kFile), fitted(FunctionListModel::kMark, true)});
  setTextElideMode(Qt::ElideMiddle);
  connect(this, &QAbstractItemView::doubleClicked, this,
          [this](const QModelIndex& index) { Enter(index); });
  header_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(header_, &QWidget::customContextMenuRequested, this,
          [this](const QPoint& position) { ShowMenu(header_->mapToGlobal(position)); });
  connect(header_, &QHeaderView::sectionClicked, this, [this](int column) {
    if (CanSort()) {
      SortBy(std::ranges::find(kColumnKeys, column, &ColumnKey::column)->key);
    }
  });
}

StkFunction* CStkListView::SelectedFunction() const {
  const QModelIndexList rows = selectionModel()->selectedRows();
  return rows.empty() ? nullptr : model_->FunctionAt(rows.front().row());
}

void CStkListView::OnUpdate(ViewHint hint) {
  if (hint == HINT_CLEAR) {
    Clear();
  } else if (hint == HINT_SELECTION) {
    Fill();
  }
}

std::optional<CommandState> CStkListView::StateOf(Command command) {
  if (const std::optional<SortKey> key = SortKeyOf(command)) {
    return CommandState{CanSort(), sortKey_ == key};
  }
  if (const std::optional<int> column = ShownColumnOf(command)) {
    return CommandState{true, !isColumnHidden(*column)};
  }
  return FunctionCommandState(command, SelectedFunction(), context_.document);
}

void CStkListView::Execute(Command command) {
  if (const std::optional<SortKey> key = SortKeyOf(command)) {
    if (CanSort()) {
      SortBy(*key);
    }
    return;
  }
  if (const std::optional<int> column = ShownColumnOf(command)) {
    setColumnHidden(*column, !isColumnHidden(*column));
    columns_->Fit();
    return;
  }
  ExecuteFunctionCommand(command, SelectedFunction(), frame_);
}

FunctionListModel::Need CStkListView::NeedOf(const StkFunction& function) const {
  const StkBounds* bounds = context_.document.Bounds();
  if (!bounds) {
    return {};
  }
  return {NeedTexts::Need(function, *bounds), needs_.Mark(function, *bounds),
          bounds->Known(function), NeedTexts::MarkRank(function, *bounds)};
}

void CStkListView::keyboardSearch(const QString& search) {
  const QModelIndex current = currentIndex();
  if (current.column() > 0) {
    selectionModel()->setCurrentIndex(current.siblingAtColumn(0), QItemSelectionModel::NoUpdate);
  }
  QTreeView::keyboardSearch(search);
}

// The first row is the node that is selected in the tree anyway.
void CStkListView::Enter(const QModelIndex& index) {
  if (index.row() > 0 && !context_.document.BelongsToJob()) {
    frame_.ShowCallee(*model_->FunctionAt(index.row()));
  }
}

void CStkListView::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    if (SelectedFunction()) {
      Enter(selectionModel()->selectedRows().front());
    }
    event->accept();
    return;
  }
  if (!SelectCurrent(*this, *event)) {
    QTreeView::keyPressEvent(event);
  }
}

QItemSelectionModel::SelectionFlags CStkListView::selectionCommand(const QModelIndex& index,
                                                                   const QEvent* event) const {
  return index.isValid() ? QTreeView::selectionCommand(index, event)
                         : QItemSelectionModel::NoUpdate;
}

void CStkListView::contextMenuEvent(QContextMenuEvent* event) {
  ShowMenu(event->globalPos());
  event->accept();
}

void CStkListView::ShowMenu(const QPoint& position) {
  // It acts on the selected row, which is seen only with the focus.
  setFocus();
  const auto stateOf = [this](Command command) {
    return StateOf(command).value_or(CommandState());
  };
  const auto act = [this](Command command) { Execute(command); };
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  AddCommands(*menu, context_, {Command::kAdjustStackSize}, stateOf, act);
  AddCommands(*menu->addMenu(context_.Text(kSortMenuText)), context_,
              {std::begin(kSortCommands), std::end(kSortCommands)}, stateOf, act);
  ShowPrompts(*menu, *this);
  menu->popup(position);
}

void CStkListView::selectionChanged(const QItemSelection& selected,
                                    const QItemSelection& deselected) {
  QTreeView::selectionChanged(selected, deselected);
  frame_.UpdateCommands();
}

void CStkListView::Clear() {
  const WaitCursor waiting;
  model_->Clear();
  sortKey_.reset();
  descending_ = false;
  header_->SetArrow(-1, false);
  frame_.UpdateCommands();
}

void CStkListView::Fill() {
  const WaitCursor waiting;
  const NodeRecord* record = context_.document.CurrentSelection() ? selectedRecord_() : nullptr;
  const StkFunctionTable* functions = context_.document.FunctionTable();
  if (record && functions) {
    model_->Fill(*record, functions->SizeLimit(), sortKey_, descending_);
  } else {
    model_->Clear();
  }
  columns_->Fit();
  frame_.UpdateCommands();
}

void CStkListView::SortBy(SortKey key) {
  descending_ = sortKey_ == key && !descending_;
  sortKey_ = key;
  model_->Sort(key, descending_);
  header_->SetArrow(ArrowColumn(key), descending_);
  frame_.UpdateCommands();
}

bool CStkListView::CanSort() const {
  const StkFunctionTable* functions = context_.document.FunctionTable();
  return functions && functions->Count() > 0;
}

}  // namespace velkor::ui
