#pragma once

#include <QKeySequence>
#include <QList>
#include <cstdint>
#include <optional>
#include <vector>

#include "ui/commands/commands.h"

namespace velkor::ui {

// An item of a menu or of the toolbar: a command, a menu of further items, or a separator.
struct MenuItem {
  enum class Kind { kCommand, kSubmenu, kSeparator, kRecent };

  // Implicit: tables of items read as what they are.
  MenuItem(Command of) : kind(Kind::kCommand), command(of) {}
  explicit MenuItem(Kind of) : kind(of) {}
  MenuItem(uint32_t text, std::vector<MenuItem> of)
      : kind(Kind::kSubmenu), textKey(text), items(std::move(of)) {}

  Kind kind;
  Command command{};
  uint32_t textKey = 0;           // of a submenu
  std::vector<MenuItem> items{};  // likewise
};

struct MenuOfBar {
  uint32_t textKey;
  std::vector<MenuItem> items;
};

// The menu bar, left to right.
const std::vector<MenuOfBar>& BarMenus();
const std::vector<MenuItem>& ToolBarItems();
// The keys of a command, the one that menus show first.
QList<QKeySequence> KeysOf(Command command);

// Of each of these groups one at most is marked.
const std::vector<std::vector<Command>>& MarkedGroups();
// The name of the menu of recent inputs.
constexpr uint32_t kRecentMenuText = kMenuTextKey + 13;

}  // namespace velkor::ui
