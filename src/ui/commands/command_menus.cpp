#include "ui/commands/command_menus.h"

#include "ui/commands/context_menu.h"

namespace velkor::ui {

namespace {

using Items = std::vector<MenuItem>;

MenuItem Separator() {
  return MenuItem(MenuItem::Kind::kSeparator);
}

Items FileItems() {
  return {Command::kOpenProject,
          Command::kOpenFolder,
          MenuItem(MenuItem::Kind::kRecent),
          Separator(),
          Command::kSaveMaximumChain,
          Command::kSaveAllChains,
          Command::kSavePage,
          Separator(),
          Command::kLoadSpecFile,
          Command::kSaveSpecFile,
          Separator(),
          Command::kExit};
}

Items ViewItems() {
  return {Command::kRecalculate,
          Command::kStop,
          {kSortMenuText, {std::begin(kSortCommands), std::end(kSortCommands)}},
          Separator(),
          Command::kAllFunctions,
          {kMenuTextKey + 12, {std::begin(kLogCommands), std::end(kLogCommands)}},
          Separator(),
          Command::kZoomIn,
          Command::kZoomOut,
          Command::kZoomReset,
          Separator(),
          Command::kNextPane,
          Command::kPreviousPane};
}

Items OptionItems() {
  return {Command::kFunctionLists,
          Command::kAdjustStackSize,
          Command::kResetFunction,
          Command::kResetAllFunctions,
          Separator(),
          Command::kProjectOptions};
}

Items SearchItems() {
  return {Command::kFind,       Command::kFindNext,    Command::kFindPrevious, Separator(),
          Command::kShowInTree, Command::kShowCallers, Command::kGoToSource,   Separator(),
          Command::kGoBack,     Command::kGoForward};
}

struct CommandKeys {
  Command command;
  const char* keys[2];
};

constexpr CommandKeys kKeys[] = {
    {Command::kOpenProject, {"Ctrl+O"}},
    {Command::kOpenFolder, {"Ctrl+Shift+O"}},
    {Command::kSaveMaximumChain, {"Ctrl+K"}},
    {Command::kSaveAllChains, {"Ctrl+Shift+K"}},
    {Command::kSavePage, {"Ctrl+Shift+S"}},
    {Command::kLoadSpecFile, {"Ctrl+L"}},
    {Command::kSaveSpecFile, {"Ctrl+S"}},
    {Command::kExit, {"Ctrl+Q"}},
    {Command::kRecalculate, {"F5"}},
    {Command::kStop, {"Shift+F5"}},
    {Command::kSortByName, {"Ctrl+Alt+1"}},
    {Command::kSortByIcon, {"Ctrl+Alt+2"}},
    {Command::kSortByTotal, {"Ctrl+Alt+3"}},
    {Command::kSortByFrame, {"Ctrl+Alt+4"}},
    {Command::kSortByMargin, {"Ctrl+Alt+5"}},
    {Command::kSortByFile, {"Ctrl+Alt+6"}},
    {Command::kAllFunctions, {"Ctrl+Shift+F"}},
    {Command::kLogAll, {"Alt+1"}},
    {Command::kLogNotes, {"Alt+2"}},
    {Command::kLogWarnings, {"Alt+3"}},
    {Command::kZoomIn, {"Ctrl++", "Ctrl+="}},
    {Command::kZoomOut, {"Ctrl+-"}},
    {Command::kZoomReset, {"Ctrl+0"}},
    {Command::kNextPane, {"F6"}},
    {Command::kPreviousPane, {"Shift+F6"}},
    {Command::kFunctionLists, {"Ctrl+U"}},
    {Command::kAdjustStackSize, {"F2"}},
    {Command::kResetFunction, {"Ctrl+R"}},
    {Command::kResetAllFunctions, {"Ctrl+Shift+R"}},
    {Command::kProjectOptions, {"Ctrl+,"}},
    {Command::kFind, {"Ctrl+F"}},
    {Command::kFindNext, {"F3"}},
    {Command::kFindPrevious, {"Shift+F3"}},
    {Command::kShowInTree, {"Ctrl+T"}},
    {Command::kShowCallers, {"F4"}},
    {Command::kGoToSource, {"F12"}},
    {Command::kGoBack, {"Alt+Left"}},
    {Command::kGoForward, {"Alt+Right"}},
    {Command::kHelp, {"F1"}},
    {Command::kLegend, {"Ctrl+F1"}},
    {Command::kAbout, {"Shift+F1"}},
    {Command::kCopy, {"Ctrl+C", "Ctrl+Ins"}},
    {Command::kCopyAsCsv, {"Ctrl+Shift+C"}},
    {Command::kClearLog, {"Ctrl+Shift+L"}},
};

}  // namespace

const std::vector<MenuOfBar>& BarMenus() {
  static const std::vector<MenuOfBar> kMenus = {
      {kMenuTextKey + 1, FileItems()},
      {kMenuTextKey + 2, ViewItems()},
      {kMenuTextKey + 3, OptionItems()},
      {kMenuTextKey + 11, SearchItems()},
      {kMenuTextKey + 4, {Command::kHelp, Command::kLegend, Separator(), Command::kAbout}}};
  return kMenus;
}

const std::vector<MenuItem>& ToolBarItems() {
  static const Items kItems = {Command::kSaveMaximumChain,
                               Separator(),
                               Command::kRecalculate,
                               Separator(),
                               Command::kStop,
                               Separator(),
                               Command::kAdjustStackSize,
                               Separator(),
                               Command::kHelp};
  return kItems;
}

QList<QKeySequence> KeysOf(Command command) {
  QList<QKeySequence> sequences;
  for (const CommandKeys& entry : kKeys) {
    if (entry.command == command) {
      for (const char* keys : entry.keys) {
        if (keys) {
          sequences.push_back(QKeySequence(keys));
        }
      }
    }
  }
  return sequences;
}

const std::vector<std::vector<Command>>& MarkedGroups() {
  static const std::vector<std::vector<Command>> kGroups = {
      {std::begin(kSortCommands), std::end(kSortCommands)},
      {std::begin(kLogCommands), std::end(kLogCommands)},
      {Command::kAllFunctions}};
  return kGroups;
}

}  // namespace velkor::ui
