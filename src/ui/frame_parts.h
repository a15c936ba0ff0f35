#pragma once

#include <QString>
#include <QWidget>
#include <functional>
#include <optional>
#include <string>

#include "core/adjustment.h"
#include "core/function.h"
#include "ui/commands/command_target.h"
#include "ui/dialogs/file_dialogs.h"
#include "ui/language.h"
#include "ui/window_settings.h"

namespace velkor::ui {

// How the Adjust Stack Size dialog ended.
struct AdjustAnswer {
  bool accepted = false;                    // with OK
  std::optional<StkAdjustment> adjustment;  // none: the function shall have none
};

// What the main frame works with beside the analysis: the windows that it opens, and whoever owns
// the frame. Replaced in tests.
struct FrameParts {
  CommandTarget& application;  // the last on the way of a command
  FileDialogs& fileDialogs;
  std::string productName;
  Language language = Language::kEnglish;
  std::function<AdjustAnswer(StkFunction&, QWidget* parent)> adjust;
  std::function<void(QWidget* parent)> functionLists;
  std::function<void(int topic)> showHelp;
  // An input that was dropped on the window, or a recent one.
  std::function<void(const QString& path)> openProject;
  WindowSettings& settings;
  std::function<void(QWidget* parent)> legend;
  // What it changes is in force when it returns, or as soon as the window has been opened anew.
  std::function<void(QWidget* parent)> options;
  // A path of the analysis and a line in it, 0: none. False when it cannot be opened.
  std::function<bool(const std::string& path, uint32_t line)> openSource;
  // The window has closed.
  std::function<void()> closed;
};

}  // namespace velkor::ui
