#include "cli/options.h"

#include <CLI/CLI.hpp>
#include <map>

#include "cli/exit_status.h"

namespace velkor {
namespace {

void AddRunOptions(CLI::App& command, Options& options) {
  static const std::map<std::string, StopAnswer> kAnswers = {{"abort", StopAnswer::kAbort},
                                                             {"retry", StopAnswer::kRetry},
                                                             {"ignore", StopAnswer::kIgnore}};
  command.add_option("PROJECT", options.project, "project file (.prj)")->required();
  command
      .add_option("--on-error", options.onError,
                  "what a wrong line of a specification file does: abort drops the file, retry and "
                  "ignore log it and go on (default: ignore)")
      ->transform(CLI::CheckedTransformer(kAnswers))
      ->option_text("abort|retry|ignore");
  command
      .add_option("--map", options.mappings,
                  "a folder of the project and where it is on this machine; may be repeated")
      ->allow_extra_args(false)
      ->option_text("'C:\\work=/home/me/work'");
  command
      .add_option("--codepage", options.codePage,
                  "character set of the files: utf-8, 932, cp1252, ... (default: the locale's)")
      ->option_text("NAME");
  command
      .add_option("--data", options.dataFolder,
                  "folder of the library stack size tables (default: ../dattarn of the program)")
      ->option_text("DIR");
}

void AddAnalyze(CLI::App& app, Options& options) {
  static const std::map<std::string, OutputFormat> kFormats = {
      {"text", OutputFormat::kText}, {"json", OutputFormat::kJson}, {"csv", OutputFormat::kCsv}};
  CLI::App& command = *app.add_subcommand("analyze", "print the stack use of every function");
  AddRunOptions(command, options);
  command
      .add_option("--load", options.loadFiles,
                  "stack size specification file to apply, in memory only; may be repeated")
      ->allow_extra_args(false)
      ->option_text("FILE");
  command.add_option("--format", options.format, "how to print (default: text)")
      ->transform(CLI::CheckedTransformer(kFormats))
      ->option_text("text|json|csv");
  command.add_flag("--full", options.full, "text: leave nothing out of a long call chain");
  command.callback([&options] { options.command = Options::Command::kAnalyze; });
}

}  // namespace

ParsedArguments ParseArguments(int argc, const char* const* argv) {
  Options options;
  CLI::App app("How much stack can each function of a firmware program use at most?", "velkor-cli");
  app.set_version_flag("--version", "velkor " VELKOR_VERSION);
  app.require_subcommand(1);
  AddAnalyze(app, options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return {std::nullopt, app.exit(error) == 0 ? kDone : kWrongUsage};
  }
  return {std::move(options), kDone};
}

}  // namespace velkor
