#pragma once

#include <optional>
#include <string>

#include "platform/machine_options.h"

namespace CLI {
class App;
}

namespace velkor::ui {

// What the window's command line asks for. Texts are bytes as the caller gave them.
struct WindowOptions {
  std::optional<std::string> project;
  MachineOptions machine;
  bool settings =
      true;  // what the window is like is taken from the last run, and kept for the next
};

struct WindowArguments {
  std::optional<WindowOptions> options;  // none: the program ends here, with status
  int status = 0;
};

constexpr int kWindowWrongUsage = 2;
constexpr int kWindowProjectNotRead = 3;

// Teaches a parser all that this command line can say, into options, which outlives it.
void AddWindowOptions(CLI::App& app, WindowOptions& options);

// Prints help on standard output and what is wrong on standard error. version: the line that
// --version prints.
WindowArguments ParseWindowArguments(int argc, const char* const* argv, const std::string& version);
// Whether they ask for what can be answered without a display.
bool AskOnlyForText(int argc, const char* const* argv);

}  // namespace velkor::ui
