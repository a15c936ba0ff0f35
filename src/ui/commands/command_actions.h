#pragma once

#include <QAction>
#include <QMenuBar>
#include <QToolBar>
#include <functional>
#include <map>
#include <span>
#include <string_view>

#include "ui/commands/command_target.h"
#include "ui/ui_context.h"

namespace velkor::ui {

// One action for every command of the window, with its texts, its keys and its image; the menu
// bar and the toolbar made of them. Choosing one is handed to the frame.
class CommandActions {
 public:
  // The actions belong to the window, whose keys they are.
  CommandActions(QWidget& window, const UiContext& context, std::string_view productName,
                 const std::function<void(Command)>& execute);

  QAction& Of(Command command) const { return *actions_.at(command); }
  // Takes over what stateOf answers for each command.
  void Update(const std::function<CommandState(Command)>& stateOf) const;

  // opening: before a menu is shown.
  void FillMenuBar(QMenuBar& menuBar, const UiContext& context,
                   const std::function<void()>& opening) const;
  void FillToolBar(QToolBar& toolBar) const;

 private:
  // At most one of them bears a mark.
  void MakeGroup(std::span<const Command> commands, QWidget& window) const;
  void FillViewMenu(QMenu& menu, const UiContext& context) const;

  std::map<Command, QAction*> actions_;
};

}  // namespace velkor::ui
