#include "ui/commands/command_actions.h"

#include <QActionGroup>
#include <QMenu>
#include <vector>

#include "ui/commands/command_menus.h"
#include "ui/commands/context_menu.h"
#include "ui/commands/toolbar_icons.h"

namespace velkor::ui {

namespace {

constexpr Command kAllCommands[] = {
    Command::kOpenProject,
    Command::kOpenFolder,
    Command::kSaveMaximumChain,
    Command::kSaveAllChains,
    Command::kSavePage,
    Command::kLoadSpecFile,
    Command::kSaveSpecFile,
    Command::kRecalculate,
    Command::kStop,
    Command::kSortByName,
    Command::kSortByIcon,
    Command::kSortByTotal,
    Command::kSortByFrame,
    Command::kSortByMargin,
    Command::kSortByFile,
    Command::kFunctionLists,
    Command::kAdjustStackSize,
    Command::kResetFunction,
    Command::kResetAllFunctions,
    Command::kShowTotals,
    Command::kTreeByModule,
    Command::kTreeBySize,
    Command::kOpenMaximumChain,
    Command::kShowBoundColumn,
    Command::kShowMarkColumn,
    Command::kShowSummary,
    Command::kShowPicture,
    Command::kSavePicture,
    Command::kClearLog,
    Command::kCopy,
    Command::kAbout,
    Command::kExit,
    Command::kHelp,
    Command::kFind,
    Command::kFindNext,
    Command::kFindPrevious,
    Command::kShowInTree,
    Command::kShowCallers,
    Command::kGoToSource,
    Command::kGoBack,
    Command::kGoForward,
    Command::kAllFunctions,
    Command::kCopyAsCsv,
    Command::kLogAll,
    Command::kLogNotes,
    Command::kLogWarnings,
    Command::kZoomIn,
    Command::kZoomOut,
    Command::kZoomReset,
    Command::kLegend,
    Command::kProjectOptions,
    Command::kNextPane,
    Command::kPreviousPane,
};

void AddMenuItems(QMenu& menu, const std::vector<MenuItem>& items, const UiContext& context,
                  const CommandActions& actions, const FillMenu& fillRecent) {
  for (const MenuItem& item : items) {
    switch (item.kind) {
      case MenuItem::Kind::kCommand:
        menu.addAction(&actions.Of(item.command));
        break;
      case MenuItem::Kind::kSeparator:
        menu.addSeparator();
        break;
      case MenuItem::Kind::kRecent:
        fillRecent(*menu.addMenu(context.Text(kRecentMenuText)));
        break;
      case MenuItem::Kind::kSubmenu: {
        QMenu* submenu = menu.addMenu(context.Text(item.textKey));
        PointAtDisabledItems(*submenu);
        for (const MenuItem& inner : item.items) {
          submenu->addAction(&actions.Of(inner.command));
        }
        break;
      }
    }
  }
}

}  // namespace

CommandActions::CommandActions(QWidget& window, const UiContext& context,
                               std::string_view productName,
                               const std::function<void(Command)>& execute) {
  for (const Command command : kAllCommands) {
    const auto key = static_cast<uint32_t>(command);
    const MessageKey menuText{kMenuTextKey + key};
    auto* action = new QAction(
        context.Decoded(context.messages.FormatMessageText(menuText, {productName})), &window);
    const QString prompt = PromptOf(command, context);
    const QString tip = context.Text(key).section(u'\n', 1, 1);
    action->setStatusTip(prompt);
    action->setToolTip(tip.isEmpty() ? prompt : tip);
    action->setShortcuts(KeysOf(command));
    action->setIcon(ToolbarIcon(command));
    action->setIconVisibleInMenu(false);
    QObject::connect(action, &QAction::triggered, &window,
                     [execute, command] { execute(command); });
    window.addAction(action);
    actions_.emplace(command, action);
  }
  for (const std::vector<Command>& commands : MarkedGroups()) {
    auto* group = commands.size() > 1 ? new QActionGroup(&window) : nullptr;
    if (group) {
      group->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
    }
    for (const Command command : commands) {
      Of(command).setCheckable(true);
      Of(command).setActionGroup(group);
    }
  }
}

void CommandActions::Update(const std::function<CommandState(Command)>& stateOf) const {
  for (const auto& [command, action] : actions_) {
    const CommandState state = stateOf(command);
    action->setEnabled(state.enabled);
    if (action->isCheckable()) {
      action->setChecked(state.radioMark);
    }
  }
}

void CommandActions::FillMenuBar(QMenuBar& menuBar, const UiContext& context,
                                 const std::function<void()>& opening,
                                 const FillMenu& fillRecent) const {
  for (const MenuOfBar& ofBar : BarMenus()) {
    QMenu* menu = menuBar.addMenu(context.Text(ofBar.textKey));
    PointAtDisabledItems(*menu);
    AddMenuItems(*menu, ofBar.items, context, *this, fillRecent);
    QObject::connect(menu, &QMenu::aboutToShow, &menuBar, opening);
  }
}

void CommandActions::FillToolBar(QToolBar& toolBar) const {
  for (const MenuItem& item : ToolBarItems()) {
    if (item.kind == MenuItem::Kind::kCommand) {
      toolBar.addAction(&Of(item.command));
    } else {
      toolBar.addSeparator();
    }
  }
}

}  // namespace velkor::ui
