#include "ui/views/callers_view.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <algorithm>

#include "ui/commands/context_menu.h"
#include "ui/commands/function_commands.h"
#include "ui/pane_ring.h"
#include "ui/views/callers_model.h"
#include "ui/views/function_icons.h"

namespace velkor::ui {

namespace {

constexpr uint32_t kCallersName = kDialogTextKey * 502 + 15;
constexpr int kCallerCharacters[] = {40, 12, 12, 40};

}  // namespace

CallersView::CallersView(UiContext& context, FrameOperations& frame, QWidget* parent)
    : QTreeView(parent),
      context_(context),
      frame_(frame),
      model_(new CallersModel(context, this)),
      work_([this] { return context_.document.BelongsToJob(); }) {
  SetUp();
  context_.document.AddView(*this);
}

CallersView::~CallersView() {
  context_.document.RemoveView(*this);
}

void CallersView::SetUp() {
  setModel(model_);
  setAccessibleName(context_.Text(kCallersName));
  setUniformRowHeights(true);
  setEditTriggers(NoEditTriggers);
  setIconSize(kTreeIconSize);
  setTextElideMode(Qt::ElideMiddle);
  setExpandsOnDoubleClick(false);
  setMinimumHeight(kLeastViewHeight);
  header()->setStretchLastSection(false);
  for (int column = 0; column < CallersModel::kColumnCount; ++column) {
    const int width = fontMetrics().averageCharWidth() * kCallerCharacters[column];
    setColumnWidth(column, std::max(width, header()->sectionSizeHint(column)));
  }
  columns_ =
      new FittedColumns(*this, *header(), {CallersModel::kName, columnWidth(CallersModel::kName), true},
                        {{CallersModel::kFile, columnWidth(CallersModel::kFile)}});
  connect(this, &QAbstractItemView::doubleClicked, this, [this] { Go(); });
}

void CallersView::Show(StkFunction& function) {
  shown_ = &function;
  if (callersAreKnown_) {
    ShowWanted();
  } else if (!callers_) {
    FindCallers();
  }
}

void CallersView::FindCallers() {
  const StkFunctionTable* functions = context_.document.FunctionTable();
  if (!functions) {
    return;
  }
  callers_ = std::make_unique<CallerIndex>(*functions);
  work_.Start([this] { return callers_->Step(); },
              [this] {
                callersAreKnown_ = true;
                ShowWanted();
              });
}

void CallersView::ShowWanted() {
  if (shown_) {
    model_->Show(*shown_, *callers_);
    setCurrentIndex(model_->index(0, 0));
    expand(model_->index(0, 0));
  }
}

StkFunction* CallersView::SelectedFunction() const {
  const QModelIndexList rows = selectionModel()->selectedRows();
  return rows.empty() ? nullptr : model_->FunctionOf(rows.front());
}

void CallersView::OnUpdate(ViewHint hint) {
  switch (hint) {
    case HINT_CLEAR:
      shown_ = nullptr;
      return Forget();
    case HINT_RESULTS:
    case HINT_STRUCTURE:
      Forget();
      if (shown_) {
        FindCallers();
      }
      return;
    case HINT_SIZES:
      model_->Refresh();
      viewport()->update();
      return;
    default:
      return;
  }
}

void CallersView::Forget() {
  work_.Stop();
  model_->Clear();
  callers_.reset();
  callersAreKnown_ = false;
}

void CallersView::Go() {
  if (StkFunction* function = SelectedFunction()) {
    frame_.ShowInTree(*function);
  }
}

std::optional<CommandState> CallersView::StateOf(Command command) {
  return FunctionCommandState(command, SelectedFunction(), context_.document);
}

void CallersView::Execute(Command command) {
  ExecuteFunctionCommand(command, SelectedFunction(), frame_);
}

void CallersView::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    Go();
    event->accept();
    return;
  }
  if (event->key() == Qt::Key_Asterisk) {
    // Not the whole branch: a call graph has more paths than memory holds.
    expand(currentIndex());
    event->accept();
    return;
  }
  QTreeView::keyPressEvent(event);
}

void CallersView::contextMenuEvent(QContextMenuEvent* event) {
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  AddCommands(
      *menu, context_,
      {Command::kShowInTree, Command::kShowCallers, Command::kGoToSource,
       Command::kAdjustStackSize},
      [this](Command command) { return StateOf(command).value_or(CommandState()); },
      [this](Command command) { Execute(command); });
  ShowPrompts(*menu, *this);
  menu->popup(event->globalPos());
  event->accept();
}

void CallersView::selectionChanged(const QItemSelection& selected,
                                   const QItemSelection& deselected) {
  QTreeView::selectionChanged(selected, deselected);
  frame_.UpdateCommands();
}

}  // namespace velkor::ui
