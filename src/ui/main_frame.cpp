#include "ui/main_frame.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QScreen>
#include <QShortcut>
#include <QToolBar>
#include <algorithm>
#include <span>

#include "core/function_text.h"
#include "files/chain_report.h"
#include "files/paths.h"
#include "ui/commands/context_menu.h"
#include "ui/commands/recent_menu.h"
#include "ui/commands/toolbar_icons.h"
#include "ui/dropped_input.h"
#include "ui/wait_cursor.h"

namespace velkor::ui {

namespace {

constexpr uint32_t kIdlePrompt = 57345;
constexpr uint32_t kNames = kDialogTextKey * 500;
constexpr uint32_t kProgressName = kNames + 1004;
constexpr uint32_t kToolBarName = kNames + 1005;
constexpr uint32_t kUntitled = kNames + 1006;
constexpr uint32_t kNotSavedTitle = kNames + 1007;
constexpr uint32_t kNotSavedPrompt = kNames + 1008;
constexpr auto kSourceNotOpened = static_cast<MessageKey>(kDialogTextKey * 502 + 22);

constexpr QSize kInitialSize(1200, 860);
constexpr int kTreeWidth = 200;
constexpr int kListHeight = 300;
constexpr int kLogHeight = 50;
constexpr int kToldMilliseconds = 6000;

// Of one view, whichever has the focus.
constexpr Command kListCommands[] = {Command::kShowBoundColumn, Command::kShowMarkColumn};
constexpr Command kTreeCommands[] = {Command::kShowTotals, Command::kTreeByModule,
                                     Command::kTreeBySize, Command::kOpenMaximumChain};

bool IsOneOf(Command command, std::span<const Command> commands) {
  return std::ranges::find(commands, command) != commands.end();
}

}  // namespace

CMainFrame::CMainFrame(UiContext& context, NotificationQueue& posted, FrameParts parts)
    : context_(context),
      posted_(posted),
      parts_(std::move(parts)),
      actions_(*this, context, parts_.productName, [this](Command command) { Route(command); }),
      statusBar_(new CStkStatusBar(context.Text(kProgressName), this)),
      keeper_(context),
      notes_(context),
      stackNotes_(context, keeper_,
                  [this](const QString& text) { statusBar_->SetStacksText(text); }),
      monitor_(context.document, *statusBar_),
      commands_(context, posted, parts_, monitor_, *this),
      windowCommands_(*this, parts_, [this](int step) { GoToPane(step); }) {
  context_.document.AddView(*this);
  setAcceptDrops(true);
  setContextMenuPolicy(Qt::NoContextMenu);
  CreateBars();
  CreateViews();
  SetInitialSizes();
  RestoreWindow(Remembered(), parts_.settings);
  connect(qApp, &QApplication::focusChanged, this,
          [this](QWidget*, QWidget* focused) { FollowFocus(focused); });
  posted_.SetHandlers(
      {[this](uint32_t message, uint64_t parameter) { monitor_.Handle(message, parameter); },
       [this] { context_.reporter.HandleRequest(); }, [this] { UpdateCommands(); }});
  DocumentChanged();
}

CMainFrame::~CMainFrame() {
  context_.document.RemoveView(*this);
  posted_.ClearHandlers();
  disconnect(qApp, nullptr, this, nullptr);
  activeView_ = nullptr;
  navigator_.reset();
  // The views tell this frame of changes while they go.
  qDeleteAll(findChildren<QDockWidget*>());
  delete takeCentralWidget();
  logView_ = nullptr;
}

void CMainFrame::CreateBars() {
  actions_.FillMenuBar(
      *menuBar(), context_, [this] { UpdateCommands(); },
      [this](QMenu& menu) {
        ShowRecentInputs(menu, context_, parts_.settings,
                         [this](const QString& path) { parts_.openProject(path); });
      });
  connect(new QShortcut(Qt::Key_F10, this), &QShortcut::activated, this,
          [this] { menuBar()->setActiveAction(menuBar()->actions().front()); });
  auto* toolBar = new QToolBar(context_.Text(kToolBarName), this);
  toolBar->setAccessibleName(context_.Text(kToolBarName));
  toolBar->setObjectName("toolBar");
  toolBar->setIconSize(kToolbarIconSize);
  toolBar->setAllowedAreas(Qt::AllToolBarAreas);
  actions_.FillToolBar(*toolBar);
  addToolBar(Qt::TopToolBarArea, toolBar);
  setStatusBar(statusBar_);
}

void CMainFrame::CreateViews() {
  outerSplitter_ = new QSplitter(Qt::Horizontal, this);
  rightSplitter_ = new QSplitter(Qt::Vertical, outerSplitter_);
  treeView_ = new CStkTreeView(context_, *this);
  listView_ = new CStkListView(context_, *this, [this] { return treeView_->SelectedRecord(); });
  logView_ = new CStkLogView(context_, *this, parts_.language);
  for (QWidget* view : std::initializer_list<QWidget*>{treeView_, listView_, logView_}) {
    view->setMinimumHeight(kLeastViewHeight);
  }
  outerSplitter_->insertWidget(0, treeView_);
  outerSplitter_->setStretchFactor(0, 0);
  outerSplitter_->setStretchFactor(1, 1);
  outerSplitter_->setChildrenCollapsible(false);
  rightSplitter_->setFrameShape(QFrame::StyledPanel);
  rightSplitter_->addWidget(listView_);
  rightSplitter_->addWidget(logView_);
  rightSplitter_->setStretchFactor(0, 0);
  rightSplitter_->setStretchFactor(1, 1);
  rightSplitter_->setChildrenCollapsible(false);
  outerSplitter_->setObjectName("outer");
  rightSplitter_->setObjectName("right");
  setCentralWidget(outerSplitter_);
  panels_ = std::make_unique<FunctionPanels>(context_, *this, *this);
  navigator_ = std::make_unique<Navigator>(
      context_, *treeView_, *this,
      [this](const QString& text) { statusBar_->showMessage(text, kToldMilliseconds); });
  answers_ = std::make_unique<AnswerPanels>(context_, keeper_, *this, *treeView_, *this, [this] {
    return parts_.fileDialogs.PictureToSave(context_, DialogParent());
  });
  panes_.Add(*treeView_);
  panes_.Add(*listView_);
  panes_.Add(*logView_);
  panes_.Add(panels_->AllFunctions());
  panes_.Add(panels_->Callers());
  panes_.Add(answers_->Summary());
  panes_.Add(answers_->Picture());
  activeView_ = treeView_;
  treeView_->setFocus();
}

// On a small screen the log keeps its part.
void CMainFrame::SetInitialSizes() {
  const QSize available = screen()->availableSize();
  resize(
      kInitialSize.boundedTo(available - QSize(available.width() / 20, available.height() / 10)));
  const int bars = menuBar()->sizeHint().height() + kToolbarIconSize.height() * 2 +
                   statusBar_->sizeHint().height();
  const int views =
      std::max(height() - bars - answers_->SetInitialHeight(height()), 2 * kLogHeight);
  const int list = std::min(kListHeight, views * 3 / 5);
  rightSplitter_->setSizes({list, views - list});
  outerSplitter_->setSizes({kTreeWidth, std::max(width() - kTreeWidth, kTreeWidth)});
}

void CMainFrame::DocumentChanged() {
  const std::string& path = context_.document.PathName();
  QString name = path.empty() ? context_.Text(kUntitled)
                              : context_.Decoded(FileNamePart(path, context_.host.codePage));
  const bool notSaved = context_.document.SystemSaveFailed();
  if (notSaved) {
    name += " " + context_.Text(kNotSavedTitle);
  }
  setWindowTitle(name + " - " + context_.Decoded(parts_.productName));
  statusBar_->SetIdleText(context_.Text(notSaved ? kNotSavedPrompt : kIdlePrompt));
  UpdateCommands();
}

void CMainFrame::OnUpdate(ViewHint hint) {
  if (hint == HINT_SAVED) {
    DocumentChanged();
  }
}

void CMainFrame::FollowFocus(QWidget* focused) {
  if (!focused) {
    return;
  }
  if (CommandTarget* holder = panes_.Holder(*focused)) {
    activeView_ = holder;
  }
  UpdateCommands();
}

void CMainFrame::GoToPane(int step) {
  if (QWidget* pane = panes_.Next(activeView_, step)) {
    pane->setFocus(Qt::ShortcutFocusReason);
  }
}

RememberedWindow CMainFrame::Remembered() {
  return {*this, *treeView_, *listView_, panels_->AllFunctions(), panels_->Callers(), *logView_};
}

void CMainFrame::closeEvent(QCloseEvent* event) {
  event->accept();
  if (closed_) {
    return;
  }
  commands_.Stop();
  UpdateCommands();
  if (!IsModal()) {
    if (!MayDiscardAnalysis()) {
      event->ignore();
      return;
    }
    LetGoOfDocument();
  }
  closed_ = true;
  RememberWindow(Remembered(), parts_.settings);
  if (parts_.closed) {
    parts_.closed();
  }
}

// Now rather than when everything is torn down: if the adjustments cannot be saved, the user is
// still there to be told.
void CMainFrame::LetGoOfDocument() {
  const WaitCursor waiting;
  context_.document.UpdateAllViews(nullptr, HINT_CLEAR);
  context_.document.DeleteContents();
  posted_.HandleAll();
}

void CMainFrame::dragEnterEvent(QDragEnterEvent* event) {
  if (!IsModal() && !DraggedProject(*event->mimeData()).isEmpty()) {
    AcceptAsCopy(*event);
  }
}

void CMainFrame::dragMoveEvent(QDragMoveEvent* event) {
  AcceptAsCopy(*event);
}

// Opened once the drag has ended: opening may show a box.
void CMainFrame::dropEvent(QDropEvent* event) {
  const QString path = DraggedProject(*event->mimeData());
  if (IsModal() || path.isEmpty()) {
    return;
  }
  AcceptAsCopy(*event);
  QMetaObject::invokeMethod(
      this,
      [this, path] {
        if (!IsModal()) {
          parts_.openProject(path);
        }
      },
      Qt::QueuedConnection);
}

bool CMainFrame::IsModal() const {
  return posted_.IsHeld() || QApplication::activeModalWidget() != nullptr;
}

QWidget* CMainFrame::DialogParent() {
  QWidget* modal = QApplication::activeModalWidget();
  return modal ? modal : this;
}

void CMainFrame::UpdateCommands() {
  if (activeView_) {
    // What is not seen is not acted on.
    if (panes_.IsHidden(activeView_, *this)) {
      activeView_ = treeView_;
      treeView_->setFocus();
    }
    actions_.Update([this](Command command) { return RoutedState(command); });
  }
}

std::vector<CommandTarget*> CMainFrame::Targets(Command command) {
  if (IsOneOf(command, kSortCommands) || IsOneOf(command, kListCommands)) {
    return {listView_, activeView_, &commands_, &parts_.application};
  }
  if (IsOneOf(command, kTreeCommands)) {
    return {treeView_};
  }
  if (IsOneOf(command, kLogCommands)) {
    return {logView_};
  }
  return {activeView_, panels_.get(),    navigator_.get(),   answers_.get(),
          &commands_,  &windowCommands_, &parts_.application};
}

CommandState CMainFrame::RoutedState(Command command) {
  for (CommandTarget* target : Targets(command)) {
    if (const std::optional<CommandState> state = target->StateOf(command)) {
      return *state;
    }
  }
  return {};
}

void CMainFrame::Route(Command command) {
  for (CommandTarget* target : Targets(command)) {
    const std::optional<CommandState> state = target->StateOf(command);
    if (!state) {
      continue;
    }
    if (state->enabled) {
      target->Execute(command);
    }
    break;
  }
  UpdateCommands();
}

void CMainFrame::SaveCallChain(StkFunction& function, bool allChains) {
  const auto path = parts_.fileDialogs.ReportToSave(context_, DialogParent());
  if (path && HasReadableFunctions(context_.document)) {
    const WaitCursor waiting;
    context_.document.SaveCallChains(*path, function, allChains,
                                     StkChainReport::FormatOf(*path, context_.host.codePage));
    UpdateCommands();
  }
}

bool CMainFrame::AdjustStackSize(StkFunction& function) {
  CStkDoc& document = context_.document;
  if (!document.FunctionTable() || !document.CanChangeAnalysis() ||
      !document.CanKeepAdjustments() || !document.CanStateHere(function)) {
    return false;
  }
  const AdjustAnswer answer = parts_.adjust(function, DialogParent());
  if (!answer.accepted) {
    return false;
  }
  const WaitCursor waiting;
  if (answer.adjustment) {
    document.AdjustFunction(function, *answer.adjustment);
  } else if (function.adjustment) {
    document.CancelAdjustment(function);
  }
  UpdateCommands();
  return true;
}

void CMainFrame::ResetFunction(StkFunction& function) {
  CStkDoc& document = context_.document;
  if (!document.FunctionTable() || !document.CanChangeAnalysis() || !function.adjustment ||
      !document.CanStateHere(function)) {
    return;
  }
  const std::string name = FunctionSpecName(function, context_.host.codePage);
  if (context_.reporter.AskYesNo(MessageKey::kI9502, {name})) {
    const WaitCursor waiting;
    document.CancelAdjustment(function);
    UpdateCommands();
  }
}

void CMainFrame::ShowInTree(StkFunction& function) {
  navigator_->ShowInTree(function);
}

void CMainFrame::ShowCallee(StkFunction& function) {
  navigator_->ShowCallee(function);
}

void CMainFrame::ShowCallers(StkFunction& function) {
  panels_->ShowCallers(function);
}

void CMainFrame::GoToSource(StkFunction& function) {
  const SourceLine place = function.Place();
  if (place.file) {
    GoToPlace(place.file->name, place.line);
  } else if (function.file) {
    GoToPlace(function.file->name, 0);
  }
}

void CMainFrame::GoToPlace(const std::string& path, uint32_t line) {
  if (!parts_.openSource(path, line)) {
    statusBar_->showMessage(
        context_.Decoded(context_.messages.FormatMessageText(kSourceNotOpened, {path})),
        kToldMilliseconds);
  }
}

}  // namespace velkor::ui
