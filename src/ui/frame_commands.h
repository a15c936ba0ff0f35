#pragma once

#include <QWidget>
#include <optional>

#include "document/job_monitor.h"
#include "ui/commands/command_target.h"
#include "ui/frame_parts.h"
#include "ui/notification_queue.h"
#include "ui/ui_context.h"

namespace velkor::ui {

// The commands of the main frame itself: those that concern the whole analysis, not one function.
// Everything it is given outlives it. User-interface thread.
class FrameCommands : public CommandTarget {
 public:
  // window: in front of which dialogs open.
  FrameCommands(UiContext& context, NotificationQueue& posted, FrameParts& parts,
                StkJobMonitor& monitor, QWidget& window);

  std::optional<CommandState> StateOf(Command command) override;
  void Execute(Command command) override;
  // Every job that runs.
  void Stop();
  // Makes good an automatic save that has failed. When it fails again the user is told, and decides
  // whether its adjustments may be lost with the analysis.
  bool MayDiscardAnalysis();

 private:
  void LoadSpecFile();
  void SaveSpecFile();
  void SavePage();
  void ResetAllFunctions();
  void Recalculate();

  UiContext& context_;
  NotificationQueue& posted_;
  FrameParts& parts_;
  StkJobMonitor& monitor_;
  QWidget& window_;
};

// There are functions, and no job is changing them in its thread.
bool HasReadableFunctions(CStkDoc& document);

}  // namespace velkor::ui
