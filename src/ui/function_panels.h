#pragma once

#include <QDockWidget>
#include <QMainWindow>
#include <functional>
#include <optional>

#include "ui/commands/command_target.h"
#include "ui/commands/frame_operations.h"
#include "ui/ui_context.h"
#include "ui/views/all_functions_view.h"
#include "ui/views/callers_view.h"

namespace velkor::ui {

// The panels beside the three views: all functions, where functions are found, and the callers of
// one. Hidden until they are asked for; each can be moved, and closed, which gives the keyboard
// back. User-interface thread.
class FunctionPanels : public CommandTarget {
 public:
  FunctionPanels(UiContext& context, FrameOperations& frame, QMainWindow& window);
  FunctionPanels(const FunctionPanels&) = delete;
  FunctionPanels& operator=(const FunctionPanels&) = delete;

  void ShowCallers(StkFunction& function);
  AllFunctionsView& AllFunctions() { return *all_; }
  CallersView& Callers() { return *callers_; }

  std::optional<CommandState> StateOf(Command command) override;
  void Execute(Command command) override;

 private:
  QDockWidget* AddPanel(uint32_t title, const char* name, QWidget* view);
  void Open(QDockWidget& panel);
  void ToggleAll();
  void GoOn(int step);

  UiContext& context_;
  FrameOperations& frame_;
  QMainWindow& window_;
  bool hasHeight_ = false;  // which the user may have changed since
  // Owned by the window.
  AllFunctionsView* all_;
  CallersView* callers_;
  QDockWidget* allPanel_;
  QDockWidget* callersPanel_;
};

}  // namespace velkor::ui
