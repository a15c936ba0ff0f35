#pragma once

#include <QDockWidget>
#include <QMainWindow>
#include <functional>
#include <optional>
#include <string>

#include "ui/answer/answer_keeper.h"
#include "ui/commands/command_target.h"
#include "ui/commands/frame_operations.h"
#include "ui/picture/picture_view.h"
#include "ui/summary/summary_pane.h"
#include "ui/ui_context.h"
#include "ui/views/call_tree_view.h"

namespace velkor::ui {

// The panels above the three views: the summary, and behind it the picture, which takes more room
// while it is in front. Each can be moved and closed.
class AnswerPanels : public CommandTarget {
 public:
  // askPath: where the picture is to be saved. All outlive the panels but their widgets, which
  // belong to the window.
  using AskPath = std::function<std::optional<std::string>()>;
  AnswerPanels(UiContext& context, AnswerKeeper& keeper, FrameOperations& frame, CStkTreeView& tree,
               QMainWindow& window, AskPath askPath);
  AnswerPanels(const AnswerPanels&) = delete;
  AnswerPanels& operator=(const AnswerPanels&) = delete;

  SummaryPane& Summary() { return *summary_; }
  PictureView& Picture() { return *picture_; }

  // Of the summary, in a window of that height; answers it.
  int SetInitialHeight(int ofWindow);

  std::optional<CommandState> StateOf(Command command) override;
  void Execute(Command command) override;

 private:
  QDockWidget* AddPanel(uint32_t title, const char* name, QWidget* view);
  QWidget* PictureWithLegend();
  void ShowPath(const std::vector<uint32_t>& path);
  // In front, or closed when it is that already.
  void Toggle(QDockWidget& panel, QWidget& view, double partOfWindow);
  void SavePicture();

  UiContext& context_;
  CStkTreeView& tree_;
  QMainWindow& window_;
  AskPath askPath_;
  SummaryPane* summary_;
  PictureView* picture_;
  QDockWidget* summaryPanel_;
  QDockWidget* picturePanel_;
};

}  // namespace velkor::ui
