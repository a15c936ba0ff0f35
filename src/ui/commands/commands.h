#pragma once

#include <cstdint>

namespace velkor::ui {

// The commands of the window. Each number is also the key of the command's prompt in the
// catalogue; the text of its menu item has the key kMenuTextKey + the number.
enum class Command : uint32_t {
  kOpenProject = 32771,
  kOpenFolder = 32789,
  kSaveMaximumChain = 32772,
  kSaveAllChains = 32773,
  kLoadSpecFile = 32774,
  kSaveSpecFile = 32775,
  kRecalculate = 32776,
  kStop = 32777,
  kSortByName = 32778,
  kSortByIcon = 32779,
  kSortByTotal = 32780,
  kSortByFrame = 32781,
  kSortByMargin = 32782,
  kSortByFile = 32783,
  kFunctionLists = 32784,
  kAdjustStackSize = 32785,
  kResetFunction = 32786,
  kResetAllFunctions = 32787,
  kSavePage = 32788,
  kFind = 32810,
  kFindNext = 32811,
  kFindPrevious = 32812,
  kShowInTree = 32813,
  kShowCallers = 32814,
  kGoBack = 32815,
  kGoForward = 32816,
  kGoToSource = 32817,
  kAllFunctions = 32818,
  kCopyAsCsv = 32819,
  kLogAll = 32820,
  kLogNotes = 32821,
  kLogWarnings = 32822,
  kZoomIn = 32823,
  kZoomOut = 32824,
  kZoomReset = 32825,
  kLegend = 32826,
  kProjectOptions = 32827,
  kNextPane = 32828,
  kPreviousPane = 32829,
  kClearLog = 57633,
  kCopy = 57634,
  kAbout = 57664,
  kExit = 57665,
  kHelp = 57670,
};

// Texts of the window beside prompts and messages, by their catalogue keys:
//   kMenuTextKey + command          menu item, with "&" mnemonics and "%s" for the product name
//   kMenuTextKey + 1 to 4           the menus File, View, Option, Help; + 5 the submenu "Sort &List
//   by"; + 11 the menu Search; + 12 the submenu of the log; + 13 that of the recent inputs
//   kDialogTextKey * dialog + item  texts of a dialog's item; item 0 is the title
constexpr uint32_t kMenuTextKey = 1000000;
constexpr uint32_t kDialogTextKey = 100000;

}  // namespace velkor::ui
