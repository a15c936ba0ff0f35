#pragma once

#include <QWidget>
#include <functional>
#include <optional>

#include "ui/commands/command_target.h"
#include "ui/frame_parts.h"
#include "ui/text_zoom.h"

namespace velkor::ui {

// The commands about the window itself: the size of its texts, the turn of its panes, its legend
// and its options. User-interface thread.
class WindowCommands : public CommandTarget {
 public:
  // goToPane: 1 or -1.
  WindowCommands(QWidget& window, FrameParts& parts, std::function<void(int step)> goToPane);

  std::optional<CommandState> StateOf(Command command) override;
  void Execute(Command command) override;

 private:
  void Zoom(int percent);

  QWidget& window_;
  FrameParts& parts_;
  std::function<void(int step)> goToPane_;
  TextZoom zoom_;
};

}  // namespace velkor::ui
