#include "ui/function_panels.h"

namespace velkor::ui {

namespace {

constexpr uint32_t kAllTitle = kDialogTextKey * 502 + 10;
constexpr uint32_t kCallersTitle = kDialogTextKey * 502 + 15;

}  // namespace

FunctionPanels::FunctionPanels(UiContext& context, FrameOperations& frame, QMainWindow& window)
    : context_(context),
      frame_(frame),
      all_(new AllFunctionsView(context, frame)),
      callers_(new CallersView(context, frame)),
      allPanel_(AddPanel(window, kAllTitle, "allFunctions", all_)),
      callersPanel_(AddPanel(window, kCallersTitle, "callers", callers_)) {
  window.tabifyDockWidget(allPanel_, callersPanel_);
  allPanel_->hide();
  callersPanel_->hide();
}

QDockWidget* FunctionPanels::AddPanel(QMainWindow& window, uint32_t title, const char* name,
                                      QWidget* view) {
  auto* panel = new QDockWidget(context_.Text(title), &window);
  panel->setObjectName(name);
  panel->setWidget(view);
  window.addDockWidget(Qt::BottomDockWidgetArea, panel);
  QObject::connect(panel, &QDockWidget::visibilityChanged, panel,
                   [this] { frame_.UpdateCommands(); });
  return panel;
}

void FunctionPanels::ShowCallers(StkFunction& function) {
  callersPanel_->show();
  callersPanel_->raise();
  callers_->Show(function);
  callers_->setFocus();
}

std::optional<CommandState> FunctionPanels::StateOf(Command command) {
  switch (command) {
    case Command::kFind:
      return CommandState{true};
    case Command::kFindNext:
    case Command::kFindPrevious:
      return CommandState{!context_.document.PathName().empty()};
    case Command::kAllFunctions:
      return CommandState{true, !allPanel_->isHidden()};
    default:
      return std::nullopt;
  }
}

void FunctionPanels::Execute(Command command) {
  switch (command) {
    case Command::kFind:
      allPanel_->show();
      allPanel_->raise();
      all_->StartFind();
      return;
    case Command::kFindNext:
      return GoOn(1);
    case Command::kFindPrevious:
      return GoOn(-1);
    case Command::kAllFunctions:
      return ToggleAll();
    default:
      return;
  }
}

// One that another panel covers is not what the user wants hidden.
void FunctionPanels::ToggleAll() {
  const bool isSeen = !all_->visibleRegion().isEmpty();
  allPanel_->setVisible(!isSeen);
  if (!isSeen) {
    allPanel_->raise();
    all_->Table().setFocus();
  }
}

// Without anything to look for, it is asked for.
void FunctionPanels::GoOn(int step) {
  if (!all_->HasText()) {
    return Execute(Command::kFind);
  }
  allPanel_->show();
  allPanel_->raise();
  all_->GoOn(step);
}

}  // namespace velkor::ui
