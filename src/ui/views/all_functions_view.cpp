#include "ui/views/all_functions_view.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QVBoxLayout>
#include <algorithm>
#include <memory>

#include "ui/commands/context_menu.h"
#include "ui/commands/function_commands.h"
#include "ui/pane_ring.h"
#include "ui/text_colors.h"
#include "ui/views/all_functions_model.h"
#include "ui/views/function_icons.h"

namespace velkor::ui {

namespace {

constexpr uint32_t kAllTexts = kDialogTextKey * 502;
constexpr uint32_t kTableName = kAllTexts + 10;
constexpr uint32_t kFilterName = kAllTexts + 11;
constexpr uint32_t kFilterHint = kAllTexts + 12;
constexpr auto kCountText = static_cast<MessageKey>(kAllTexts + 13);
constexpr uint32_t kSortMenu = kAllTexts + 14;
constexpr size_t kFilteredAtOnce = 512;
constexpr int kColumnCharacters[] = {30, 10, 10, 12, 10, 40, 6};

}  // namespace

AllFunctionsView::AllFunctionsView(UiContext& context, FrameOperations& frame, QWidget* parent)
    : QWidget(parent),
      context_(context),
      frame_(frame),
      text_(new QLineEdit(this)),
      count_(new QLabel(this)),
      table_(new QTableView(this)),
      model_(new AllFunctionsModel(context, table_)),
      work_([this] { return context_.document.BelongsToJob(); }),
      copying_([this] { return context_.document.BelongsToJob(); }) {
  auto* head = new QHBoxLayout;
  head->addWidget(text_, 1);
  head->addWidget(count_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(head);
  layout->addWidget(table_, 1);
  text_->setPlaceholderText(context_.Text(kFilterHint));
  SetHintColor(*text_);
  text_->setAccessibleName(context_.Text(kFilterName));
  text_->setClearButtonEnabled(true);
  text_->installEventFilter(this);
  QObject::connect(text_, &QLineEdit::textChanged, this, [this] { Filter(); });
  setFocusProxy(text_);
  SetUpTable();
  context_.document.AddView(*this);
}

AllFunctionsView::~AllFunctionsView() {
  context_.document.RemoveView(*this);
}

void AllFunctionsView::SetUpTable() {
  table_->setModel(model_);
  table_->setAccessibleName(context_.Text(kTableName));
  table_->setMinimumHeight(kLeastViewHeight);
  table_->setShowGrid(false);
  table_->setWordWrap(false);
  table_->setTextElideMode(Qt::ElideMiddle);
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table_->setTabKeyNavigation(false);
  table_->setCornerButtonEnabled(false);
  table_->setIconSize(kTreeIconSize);
  table_->verticalHeader()->hide();
  table_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  QHeaderView& header = *table_->horizontalHeader();
  header.setSectionsClickable(true);
  header.setHighlightSections(false);
  header.setSectionsMovable(true);
  header.setSortIndicatorShown(true);
  for (int column = 0; column < model_->columnCount(); ++column) {
    const int width = fontMetrics().averageCharWidth() * kColumnCharacters[column];
    header.resizeSection(column, std::max(width, header.sectionSizeHint(column)));
  }
  const auto fitted = [&header](FunctionCell cell) {
    const auto column = static_cast<int>(cell);
    return FittedColumns::Column{column, header.sectionSize(column),
                                 cell == FunctionCell::kFunction};
  };
  columns_ = new FittedColumns(*table_, header, fitted(FunctionCell::kFunction),
                               {fitted(FunctionCell::kFile)});
  FitRows();
  table_->installEventFilter(this);
  table_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(table_, &QWidget::customContextMenuRequested, this,
          [this](const QPoint& at) { ShowMenu(table_->viewport()->mapToGlobal(at)); });
  connect(table_, &QAbstractItemView::doubleClicked, this, [this] { Go(); });
  connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          [this] { frame_.UpdateCommands(); });
  connect(&header, &QHeaderView::sectionClicked, this,
          [this](int column) { SortBy(static_cast<FunctionCell>(column)); });
}

void AllFunctionsView::FitRows() {
  const int height = std::max(table_->fontMetrics().height(), kTreeIconSize.height()) + 4;
  table_->verticalHeader()->setMinimumSectionSize(height);
  table_->verticalHeader()->setDefaultSectionSize(height);
}

void AllFunctionsView::StartFind() {
  text_->setFocus(Qt::ShortcutFocusReason);
  text_->selectAll();
}

void AllFunctionsView::GoOn(int step) {
  const auto go = [this, step] {
    const int count = model_->rowCount();
    if (count == 0) {
      return;
    }
    // A row to which the user has come by other means is the next one itself.
    const StkFunction* function = SelectedFunction();
    if (!function || function->index == shown_) {
      const int at = table_->currentIndex().row();
      Select(at < 0 ? (step > 0 ? 0 : count - 1) : (at + step + count) % count);
    }
    ShowSelected();
  };
  if (work_.IsRunning() || isStale_) {
    then_ = go;
  } else {
    go();
  }
}

StkFunction* AllFunctionsView::SelectedFunction() const {
  const QModelIndex current = table_->currentIndex();
  const bool isSelected = current.isValid() && table_->selectionModel()->isSelected(current);
  return isSelected ? model_->FunctionAt(current.row()) : nullptr;
}

void AllFunctionsView::OnUpdate(ViewHint hint) {
  switch (hint) {
    case HINT_CLEAR:
      return Clear();
    case HINT_RESULTS:
    case HINT_STRUCTURE:
    case HINT_SIZES:
      if (const StkFunction* function = SelectedFunction()) {
        kept_ = function->index;
      }
      return Order();
    default:
      return;
  }
}

void AllFunctionsView::Clear() {
  work_.Stop();
  copying_.Stop();
  then_ = {};
  kept_.reset();
  shown_.reset();
  isOrdered_ = false;
  isStale_ = true;
  order_.clear();
  model_->SetRows({});
  count_->clear();
}

// What is not seen need not be worked on.
void AllFunctionsView::Order() {
  isOrdered_ = false;
  isStale_ = true;
  work_.Stop();
  const StkFunctionTable* functions = context_.document.FunctionTable();
  if (!isVisible() || !functions) {
    return;
  }
  table_->horizontalHeader()->setSortIndicator(
      static_cast<int>(by_.cell), by_.descending ? Qt::DescendingOrder : Qt::AscendingOrder);
  const auto ordering =
      std::make_shared<FunctionOrdering>(*functions, context_.document.Bounds(), by_);
  work_.Start([ordering] { return ordering->Step(); },
              [this, ordering] {
                order_ = ordering->Take();
                isOrdered_ = true;
                Filter();
              });
}

void AllFunctionsView::Filter() {
  if (!isOrdered_) {
    return;
  }
  struct Filtering {
    FunctionFilter filter;
    size_t next = 0;
    std::vector<uint32_t> rows{};
  };
  const auto filtering = std::make_shared<Filtering>(
      Filtering{.filter = FunctionFilter(text_->text(), context_.host.codePage)});
  if (filtering->filter.IsEmpty()) {
    work_.Stop();
    TakeRows(order_);
    return;
  }
  work_.Start(
      [this, filtering] {
        const StkFunctionList& all = context_.document.FunctionTable()->Functions();
        const size_t end = std::min(filtering->next + kFilteredAtOnce, order_.size());
        for (; filtering->next < end; ++filtering->next) {
          const uint32_t function = order_[filtering->next];
          if (filtering->filter.Fits(*all[function])) {
            filtering->rows.push_back(function);
          }
        }
        return filtering->next < order_.size();
      },
      [this, filtering] { TakeRows(std::move(filtering->rows)); });
}

void AllFunctionsView::TakeRows(std::vector<uint32_t> rows) {
  if (!kept_ && SelectedFunction()) {
    kept_ = SelectedFunction()->index;
  }
  isStale_ = false;
  count_->setText(context_.Decoded(context_.messages.FormatMessageText(
      kCountText, {static_cast<uint32_t>(rows.size()), static_cast<uint32_t>(order_.size())})));
  model_->SetRows(std::move(rows));
  const StkFunctionTable* functions = context_.document.FunctionTable();
  if (kept_ && functions && *kept_ < functions->Count()) {
    const int row = model_->RowOf(*functions->Functions()[*kept_]);
    if (row >= 0) {
      Select(row);
    }
  }
  kept_.reset();
  columns_->Fit();
  if (HasText() && !SelectedFunction() && model_->rowCount() > 0) {
    Select(0);
  }
  if (const auto then = std::exchange(then_, {})) {
    then();
  }
  frame_.UpdateCommands();
}

// Large numbers are what is looked for first.
void AllFunctionsView::SortBy(FunctionCell cell) {
  by_ = {cell, by_.cell == cell ? !by_.descending : IsNumberCell(cell)};
  Order();
}

void AllFunctionsView::Select(int row) {
  table_->setCurrentIndex(model_->index(row, 0));
}

// The first row where none is selected.
void AllFunctionsView::Go() {
  const auto go = [this] {
    if (!SelectedFunction() && model_->rowCount() > 0) {
      Select(0);
    }
    ShowSelected();
  };
  if (work_.IsRunning()) {
    then_ = go;
  } else {
    go();
  }
}

void AllFunctionsView::ShowSelected() {
  if (StkFunction* function = SelectedFunction()) {
    shown_ = function->index;
    frame_.ShowInTree(*function);
  }
}

std::optional<CommandState> AllFunctionsView::StateOf(Command command) {
  switch (command) {
    case Command::kCopy:
      return CommandState{text_->hasFocus() ? text_->hasSelectedText()
                                            : table_->selectionModel()->hasSelection()};
    case Command::kCopyAsCsv:
      return CommandState{table_->selectionModel()->hasSelection()};
    default:
      return FunctionCommandState(command, SelectedFunction(), context_.document);
  }
}

void AllFunctionsView::Execute(Command command) {
  switch (command) {
    case Command::kCopy:
      return text_->hasFocus() ? text_->copy() : Copy(RowTexts::Form::kTabs);
    case Command::kCopyAsCsv:
      return Copy(RowTexts::Form::kCsv);
    default:
      ExecuteFunctionCommand(command, SelectedFunction(), frame_);
  }
}

void AllFunctionsView::Copy(RowTexts::Form form) {
  if (!context_.document.FunctionTable()) {
    return;
  }
  const auto texts = std::make_shared<RowTexts>(
      context_, model_->Functions(table_->selectionModel()->selection()), form);
  copying_.Start([texts] { return texts->Step(); },
                 [texts] { QGuiApplication::clipboard()->setText(texts->Take()); });
}

bool AllFunctionsView::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    const auto& press = static_cast<const QKeyEvent&>(*event);
    if (watched == text_ ? OnTextKey(press) : OnTableKey(press)) {
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

bool AllFunctionsView::OnTextKey(const QKeyEvent& press) {
  switch (press.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      Go();
      return true;
    case Qt::Key_Down:
      table_->setFocus();
      if (!SelectedFunction() && model_->rowCount() > 0) {
        Select(0);
      }
      return true;
    default:
      return false;
  }
}

// A letter goes on with the text: looking through all rows for one that begins with it would keep
// the window from answering.
bool AllFunctionsView::OnTableKey(const QKeyEvent& press) {
  if (press.key() == Qt::Key_Return || press.key() == Qt::Key_Enter) {
    Go();
    return true;
  }
  const bool isLetter = !press.text().isEmpty() && press.text().front().isPrint() &&
                        (press.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == 0;
  if (isLetter) {
    text_->setFocus();
    text_->setText(text_->text() + press.text());
  }
  return isLetter;
}

void AllFunctionsView::ShowMenu(const QPoint& position) {
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  AddCommands(
      *menu, context_,
      {Command::kShowInTree, Command::kShowCallers, Command::kGoToSource, Command::kAdjustStackSize,
       Command::kCopy, Command::kCopyAsCsv},
      [this](Command command) { return StateOf(command).value_or(CommandState()); },
      [this](Command command) { Execute(command); });
  QMenu* sorts = menu->addMenu(context_.Text(kSortMenu));
  for (int column = 0; column < model_->columnCount(); ++column) {
    const auto cell = static_cast<FunctionCell>(column);
    QAction* action =
        sorts->addAction(model_->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString());
    action->setCheckable(true);
    action->setChecked(by_.cell == cell);
    connect(action, &QAction::triggered, this, [this, cell] { SortBy(cell); });
  }
  ShowPrompts(*menu, *this);
  menu->popup(position);
}

void AllFunctionsView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (isStale_ && !work_.IsRunning()) {
    Order();
  }
}

void AllFunctionsView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange) {
    FitRows();
  }
}

}  // namespace velkor::ui
