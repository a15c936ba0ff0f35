#pragma once

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <functional>
#include <map>
#include <string_view>

#include "ui/commands/command_target.h"
#include "ui/ui_context.h"

namespace velkor::ui {

using FillMenu = std::function<void(QMenu&)>;

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

  // opening: before a menu is shown. fillRecent: given the menu of the recent inputs.
  void FillMenuBar(QMenuBar& menuBar, const UiContext& context,
                   const std::function<void()>& opening, const FillMenu& fillRecent) const;
  void FillToolBar(QToolBar& toolBar) const;

 private:
  std::map<Command, QAction*> actions_;
};

}  // namespace velkor::ui
