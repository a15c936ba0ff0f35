#pragma once

#include <QMainWindow>
#include <QSplitter>
#include <memory>
#include <optional>
#include <vector>

#include "document/job_monitor.h"
#include "ui/commands/command_actions.h"
#include "ui/commands/command_target.h"
#include "ui/commands/frame_operations.h"
#include "ui/frame_commands.h"
#include "ui/frame_parts.h"
#include "ui/function_panels.h"
#include "ui/navigation/navigator.h"
#include "ui/notification_queue.h"
#include "ui/status_bar.h"
#include "ui/ui_context.h"
#include "ui/views/analysis_notes.h"
#include "ui/views/call_tree_view.h"
#include "ui/views/function_list_view.h"
#include "ui/views/log_view.h"
#include "ui/views/stack_notes.h"
#include "ui/window_commands.h"
#include "ui/window_memory.h"

namespace velkor::ui {

// The main window: menus, toolbar, status bar and the three views; the way of every command; and
// what the notifications of the jobs do. Asked to close, it stops every job first. As long as the
// stk system file lacks adjustments because its save has failed, title and status bar say so.
//
// A command goes to the view that had the focus last, then to the frame, then to the application;
// a sort command goes to the function list before that. The first that knows it decides.
class CMainFrame : public QMainWindow, public FrameOperations, public View {
 public:
  CMainFrame(UiContext& context, NotificationQueue& posted, FrameParts parts);
  ~CMainFrame() override;

  // Another document, or none: the title and the commands follow.
  void DocumentChanged();
  // As FrameCommands.
  bool MayDiscardAnalysis() { return commands_.MayDiscardAnalysis(); }

  void SaveCallChain(StkFunction& function, bool allChains) override;
  bool AdjustStackSize(StkFunction& function) override;
  void ResetFunction(StkFunction& function) override;
  void ShowInTree(StkFunction& function) override;
  void ShowCallee(StkFunction& function) override;
  void ShowCallers(StkFunction& function) override;
  void GoToSource(StkFunction& function) override;
  void GoToPlace(const std::string& path, uint32_t line) override;
  void UpdateCommands() override;
  void OnUpdate(ViewHint hint) override;

  CStkTreeView& TreeView() { return *treeView_; }
  CStkListView& ListView() { return *listView_; }
  CStkLogView& GetLogView() { return *logView_; }
  FunctionPanels& Panels() { return *panels_; }
  const CommandActions& Actions() const { return actions_; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void CreateBars();
  void CreateViews();
  void SetInitialSizes();
  // What has the keyboard by turns, and acts on commands while it has.
  struct Pane {
    QWidget* widget;
    CommandTarget* target;
  };
  std::vector<Pane> Panes();
  void GoToPane(int step);
  void LeaveHiddenPane();
  void FollowFocus(QWidget* focused);
  RememberedWindow Remembered();
  std::vector<CommandTarget*> Targets(Command command);
  // A command on its whole way.
  CommandState RoutedState(Command command);
  void Route(Command command);
  void LetGoOfDocument();
  // A dialog or a box is open: what it works on must not go away under it.
  bool IsModal() const;
  // In front of which a dialog opens.
  QWidget* DialogParent();

  UiContext& context_;
  NotificationQueue& posted_;
  FrameParts parts_;
  CommandActions actions_;
  // Owned by their Qt parents.
  CStkStatusBar* statusBar_;
  QSplitter* outerSplitter_ = nullptr;
  QSplitter* rightSplitter_ = nullptr;
  CStkTreeView* treeView_ = nullptr;
  CStkListView* listView_ = nullptr;
  CStkLogView* logView_ = nullptr;
  CommandTarget* activeView_ = nullptr;
  std::unique_ptr<FunctionPanels> panels_;  // once the views are there
  std::unique_ptr<Navigator> navigator_;    // likewise
  AnalysisNotes notes_;
  StackNotes stackNotes_;
  StkJobMonitor monitor_;
  FrameCommands commands_;
  WindowCommands windowCommands_;
  bool closed_ = false;
};

}  // namespace velkor::ui
