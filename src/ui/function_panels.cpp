#include "ui/function_panels.h"

#include <utility>

namespace velkor::ui {

namespace {

constexpr uint32_t kAllTitle = kDialogTextKey * 502 + 10;
constexpr uint32_t kCallersTitle = kDialogTextKey * 502 + 15;
constexpr double kPartOfWindow = 0.3;

}  // namespace

FunctionPanels::FunctionPanels(UiContext& context, FrameOperations& frame, QMainWindow& window)
    : context_(context),
      frame_(frame),
      window_(window),
      all_(new AllFunctionsView(context, frame)),
      callers_(new CallersView(context, frame)),
      allPanel_(AddPanel(kAllTitle, "allFunctions", all_)),
      callersPanel_(AddPanel(kCallersTitle, "callers", callers_)) {
  window.tabifyDockWidget(allPanel_, callersPanel_);
  allPanel_->hide();
  callersPanel_->hide();
}

QDockWidget* FunctionPanels::AddPanel(uint32_t title, const char* name, QWidget* view) {
  auto* panel = new QDockWidget(context_.Text(title), &window_);
  panel->setObjectName(name);
  panel->setWidget(view);
  window_.addDockWidget(Qt::BottomDockWidgetArea, panel);
  QObject::connect(panel, &QDockWidget::visibilityChanged, panel,
                   [this] { frame_.UpdateCommands(); });
  return panel;
}

// The views above keep most of the window when the first of them opens.
void FunctionPanels::Open(QDockWidget& panel) {
  const bool isFirst = allPanel_->isHidden() && callersPanel_->isHidden();
  panel.show();
  panel.raise();
  if (isFirst && !std::exchange(hasHeight_, true) && !panel.isFloating()) {
    window_.resizeDocks({&panel}, {static_cast<int>(window_.height() * kPartOfWindow)},
                        Qt::Vertical);
  }
}

void FunctionPanels::ShowCallers(StkFunction& function) {
  Open(*callersPanel_);
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
      Open(*allPanel_);
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
  if (!all_->visibleRegion().isEmpty()) {
    allPanel_->hide();
    return;
  }
  Open(*allPanel_);
  all_->Table().setFocus();
}

// Without anything to look for, it is asked for.
void FunctionPanels::GoOn(int step) {
  if (!all_->HasText()) {
    return Execute(Command::kFind);
  }
  Open(*allPanel_);
  all_->GoOn(step);
}

}  // namespace velkor::ui
