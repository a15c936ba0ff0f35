#pragma once

#include <optional>

#include "ui/commands/commands.h"

namespace velkor::ui {

struct CommandState {
  bool enabled = false;
  bool radioMark = false;  // the item is the chosen one of its group, or what it names is shown
};

// An object on the way of a command: the active view, the main frame, the application. The first
// that knows the command decides whether it is enabled, and carries it out. User-interface thread.
class CommandTarget {
 public:
  virtual ~CommandTarget() = default;
  // None for a command that this object does not handle.
  virtual std::optional<CommandState> StateOf(Command command) = 0;
  // Only for a command that StateOf answered as enabled.
  virtual void Execute(Command command) = 0;
};

}  // namespace velkor::ui
