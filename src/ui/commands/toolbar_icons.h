#pragma once

#include <QIcon>
#include <QSize>

#include "ui/commands/commands.h"

namespace velkor::ui {

constexpr QSize kToolbarIconSize(20, 17);

// The drawn image of a command of the toolbar, sharp at every scale; an empty one for any other
// command. User-interface thread.
QIcon ToolbarIcon(Command command);
// Of the program itself.
QIcon ProgramIcon();

}  // namespace velkor::ui
