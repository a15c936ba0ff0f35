#include "ui/window_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string_view>

namespace velkor::ui {

WindowArguments ParseWindowArguments(int argc, const char* const* argv) {
  WindowOptions options;
  CLI::App app("How much stack can each function of a firmware program use at most?", "velkor");
  app.set_version_flag("--version", "velkor " VELKOR_VERSION);
  app.add_option("PROJECT", options.project, "project file (.prj) to open");
  app.add_option("--map", options.machine.mappings,
                 "a folder of the project and where it is on this machine; may be repeated")
      ->allow_extra_args(false)
      ->option_text("'C:\\work=/home/me/work'");
  app.add_option("--codepage", options.machine.codePage,
                 "character set of the files: utf-8, 932, cp1252, ... (default: the locale's)")
      ->option_text("NAME");
  app.add_option("--data", options.machine.dataFolder,
                 "folder of the library stack size tables (default: ../dattarn of the program)")
      ->option_text("DIR");
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
