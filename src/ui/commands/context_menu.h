#pragma once

#include <QMenu>
#include <functional>
#include <vector>

#include "ui/commands/command_target.h"
#include "ui/ui_context.h"

namespace velkor::ui {

// The function list's six sort commands in the order of their menu.
constexpr Command kSortCommands[] = {Command::kSortByName,   Command::kSortByIcon,
                                     Command::kSortByTotal,  Command::kSortByFrame,
                                     Command::kSortByMargin, Command::kSortByFile};
// What the log shows, the most of it first.
constexpr Command kLogCommands[] = {Command::kLogAll, Command::kLogNotes, Command::kLogWarnings};
constexpr uint32_t kSortMenuText = kMenuTextKey + 5;

using CommandStateQuery = std::function<CommandState(Command)>;
using CommandAction = std::function<void(Command)>;

// What the status bar says of a command: the first line of its prompt text.
QString PromptOf(Command command, const UiContext& context);

// Adds the commands' items to a context menu, each as its state is now; choosing one acts.
void AddCommands(QMenu& menu, const UiContext& context, const std::vector<Command>& commands,
                 const CommandStateQuery& stateOf, const CommandAction& act);

// An item that is disabled can be pointed at, too: its prompt is shown.
void PointAtDisabledItems(QMenu& menu);

// The view's window shows the prompt of whichever item of the context menu is pointed at.
void ShowPrompts(QMenu& menu, QWidget& view);

}  // namespace velkor::ui
