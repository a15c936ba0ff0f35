#pragma once

#include <QMainWindow>

#include "ui/views/all_functions_view.h"
#include "ui/views/call_tree_view.h"
#include "ui/views/callers_view.h"
#include "ui/views/function_list_view.h"
#include "ui/views/log_view.h"
#include "ui/window_settings.h"

namespace velkor::ui {

// What of a main window is as the user has left it the last time: its place and size, its bars and
// panels, the splitters that have an object name, the columns of its tables, what tree and log
// show.
struct RememberedWindow {
  QMainWindow& window;
  CStkTreeView& tree;
  CStkListView& list;
  AllFunctionsView& all;
  CallersView& callers;
  CStkLogView& log;
};

// What is not remembered, or cannot be used, stays as it is.
void RestoreWindow(const RememberedWindow& remembered, const WindowSettings& settings);
void RememberWindow(const RememberedWindow& remembered, WindowSettings& settings);

}  // namespace velkor::ui
