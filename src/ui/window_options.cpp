#include "ui/window_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string_view>

namespace velkor::ui {

void AddWindowOptions(CLI::App& app, WindowOptions& options) {
  app.name("velkor");
  app.description("How much stack can each function of a firmware program use at most?");
  app.add_option("PROJECT", options.project,
                 "project file (.prj), velkor.toml or folder with call graph files to open");
  app.add_flag("!--no-settings", options.settings,
               "read nothing of the last run, and keep nothing for the next");
  AddMachineOptions(app, options.machine);
}

WindowArguments ParseWindowArguments(int argc, const char* const* argv,
                                     const std::string& version) {
  WindowOptions options;
  CLI::App app;
  app.set_version_flag("--version", version);
  AddWindowOptions(app, options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return {std::nullopt, app.exit(error) == 0 ? 0 : kWindowWrongUsage};
  }
  return {std::move(options), 0};
}

bool AskOnlyForText(int argc, const char* const* argv) {
  return std::any_of(argv + 1, argv + argc, [](std::string_view argument) {
    return argument == "--help" || argument == "-h" || argument == "--version";
  });
}

}  // namespace velkor::ui
