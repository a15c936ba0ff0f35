#include "ui/commands/command_actions.h"

#include <QActionGroup>
#include <QMenu>
#include <array>
#include <optional>
#include <vector>

#include "ui/commands/context_menu.h"
#include "ui/commands/toolbar_icons.h"

namespace velkor::ui {

namespace {

using Items = std::vector<std::optional<Command>>;  // none: a separator

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
};

const std::array<Items, 4>& Menus() {
  static const std::array<Items, 4> kMenus = {
      Items{Command::kOpenProject, Command::kOpenFolder, std::nullopt, Command::kSaveMaximumChain,
            Command::kSaveAllChains, Command::kSavePage, Command::kSavePicture, std::nullopt, Command::kLoadSpecFile,
            Command::kSaveSpecFile, std::nullopt, Command::kExit},
      Items{Command::kRecalculate, Command::kStop},
      Items{Command::kFunctionLists, Command::kAdjustStackSize, Command::kResetFunction,
            Command::kResetAllFunctions},
      Items{Command::kHelp, std::nullopt, Command::kAbout}};
  return kMenus;
}

constexpr size_t kViewMenu = 1;

const Items& ToolBarItems() {
  static const Items kItems = {Command::kSaveMaximumChain,
                               std::nullopt,
                               Command::kRecalculate,
                               std::nullopt,
                               Command::kStop,
                               std::nullopt,
                               Command::kAdjustStackSize,
                               std::nullopt,
                               Command::kHelp};
  return kItems;
}

QList<QKeySequence> KeysOf(Command command) {
  switch (command) {
    case Command::kCopy:
      return {QKeySequence("Ctrl+C"), QKeySequence("Ctrl+Ins")};
    case Command::kOpenProject:
      return {QKeySequence("Ctrl+O")};
    case Command::kHelp:
      return {QKeySequence("F1")};
    case Command::kOpenMaximumChain:
      return {QKeySequence("Ctrl+M")};
    case Command::kShowSummary:
      return {QKeySequence("Ctrl+1")};
    case Command::kShowPicture:
      return {QKeySequence("Ctrl+2")};
    default:
      return {};
  }
}

template <typename Commands>
Items ItemsOf(const Commands& commands) {
  return {std::begin(commands), std::end(commands)};
}

template <typename Bar>
void AddItems(Bar& bar, const Items& items, const CommandActions& actions) {
  for (const std::optional<Command>& command : items) {
    if (command) {
      bar.addAction(&actions.Of(*command));
    } else {
      bar.addSeparator();
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
  MakeGroup(kSortCommands, window);
  MakeGroup(kTreeOrderCommands, window);
  for (const Command command : kShowCommands) {
    Of(command).setCheckable(true);
  }
}

void CommandActions::MakeGroup(std::span<const Command> commands, QWidget& window) const {
  auto* group = new QActionGroup(&window);
  group->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
  for (const Command command : commands) {
    Of(command).setCheckable(true);
    Of(command).setActionGroup(group);
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
                                 const std::function<void()>& opening) const {
  for (size_t i = 0; i < Menus().size(); ++i) {
    const auto number = static_cast<uint32_t>(i + 1);
    QMenu* menu = menuBar.addMenu(context.Text(kMenuTextKey + number));
    PointAtDisabledItems(*menu);
    AddItems(*menu, Menus()[i], *this);
    if (i == kViewMenu) {
      FillViewMenu(*menu, context);
    }
    QObject::connect(menu, &QMenu::aboutToShow, &menuBar, opening);
  }
}

void CommandActions::FillViewMenu(QMenu& menu, const UiContext& context) const {
  const auto addMenu = [&](uint32_t text, const Items& items) {
    QMenu* submenu = menu.addMenu(context.Text(text));
    PointAtDisabledItems(*submenu);
    AddItems(*submenu, items, *this);
  };
  addMenu(kSortMenuText, ItemsOf(kSortCommands));
  menu.addSeparator();
  addMenu(kTreeOrderMenuText, ItemsOf(kTreeOrderCommands));
  AddItems(menu, {Command::kOpenMaximumChain, std::nullopt}, *this);
  AddItems(menu, ItemsOf(kShowCommands), *this);
}

void CommandActions::FillToolBar(QToolBar& toolBar) const {
  AddItems(toolBar, ToolBarItems(), *this);
}

}  // namespace velkor::ui
