#include "ui/answer_panels.h"

#include <QVBoxLayout>
#include <utility>

#include "ui/picture/picture_legend.h"
#include "ui/picture/picture_report.h"
#include "ui/picture/picture_texts.h"
#include "ui/summary/summary_texts.h"
#include "ui/wait_cursor.h"

namespace velkor::ui {

namespace {

constexpr double kSummaryPart = 0.3;
constexpr double kPicturePart = 0.6;

// It is seen, and not only the tab that leads to it.
bool IsInFront(const QDockWidget& panel) {
  return panel.isVisible() && !panel.visibleRegion().isEmpty();
}

}  // namespace

AnswerPanels::AnswerPanels(UiContext& context, AnswerKeeper& keeper, FrameOperations& frame,
                           CStkTreeView& tree, QMainWindow& window, AskPath askPath)
    : context_(context),
      tree_(tree),
      window_(window),
      askPath_(std::move(askPath)),
      summary_(new SummaryPane(context, keeper, frame,
                               [this](StkFunction& function) { tree_.ShowEntry(function); })),
      picture_(new PictureView(context, keeper, frame,
                               [this](const std::vector<uint32_t>& path) { ShowPath(path); })),
      summaryPanel_(AddPanel(kSummaryName, "summary", summary_)),
      picturePanel_(AddPanel(kPictureName, "picture", PictureWithLegend())) {
  window_.tabifyDockWidget(summaryPanel_, picturePanel_);
  summaryPanel_->raise();
  for (QDockWidget* panel : {summaryPanel_, picturePanel_}) {
    QObject::connect(panel, &QDockWidget::visibilityChanged, &window,
                     [&frame] { frame.UpdateCommands(); });
  }
}

int AnswerPanels::SetInitialHeight(int ofWindow) {
  const int height = static_cast<int>(ofWindow * kSummaryPart);
  window_.resizeDocks({summaryPanel_}, {height}, Qt::Vertical);
  return height;
}

QDockWidget* AnswerPanels::AddPanel(uint32_t title, const char* name, QWidget* view) {
  auto* panel = new QDockWidget(context_.Text(title), &window_);
  panel->setObjectName(name);
  panel->setWidget(view);
  window_.addDockWidget(Qt::TopDockWidgetArea, panel);
  return panel;
}

QWidget* AnswerPanels::PictureWithLegend() {
  auto* both = new QWidget;
  auto* layout = new QVBoxLayout(both);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(picture_, 1);
  layout->addWidget(new PictureLegend(context_, both));
  return both;
}

void AnswerPanels::ShowPath(const std::vector<uint32_t>& path) {
  const StkFunctionTable* functions = context_.document.FunctionTable();
  if (!functions) {
    return;
  }
  std::vector<const StkFunction*> found;
  for (const uint32_t index : path) {
    if (index >= functions->Count()) {
      return;
    }
    found.push_back(functions->Functions()[index]);
  }
  tree_.ShowPath(std::move(found));
  tree_.setFocus();
}

std::optional<CommandState> AnswerPanels::StateOf(Command command) {
  switch (command) {
    case Command::kShowSummary:
      return CommandState{true, IsInFront(*summaryPanel_)};
    case Command::kShowPicture:
      return CommandState{true, IsInFront(*picturePanel_)};
    case Command::kSavePicture:
      return CommandState{picture_->HasPicture()};
    default:
      return std::nullopt;
  }
}

void AnswerPanels::Execute(Command command) {
  switch (command) {
    case Command::kShowSummary:
      return Toggle(*summaryPanel_, summary_->Needs(), kSummaryPart);
    case Command::kShowPicture:
      return Toggle(*picturePanel_, *picture_, kPicturePart);
    default:
      return SavePicture();
  }
}

void AnswerPanels::Toggle(QDockWidget& panel, QWidget& view, double partOfWindow) {
  if (IsInFront(panel)) {
    panel.hide();
    tree_.setFocus();
    return;
  }
  panel.show();
  panel.raise();
  if (!panel.isFloating()) {
    window_.resizeDocks({&panel}, {static_cast<int>(window_.height() * partOfWindow)},
                        Qt::Vertical);
  }
  view.setFocus();
}

void AnswerPanels::SavePicture() {
  const std::optional<std::string> path = askPath_();
  if (path && picture_->HasPicture()) {
    const WaitCursor waiting;
    WritePicture(context_, picture_->LayoutToSave(), *path);
  }
}

}  // namespace velkor::ui
