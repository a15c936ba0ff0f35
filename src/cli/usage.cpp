#include "cli/usage.h"

#include <algorithm>
#include <optional>

#include "files/near_words.h"
#include "reports/terminal_text.h"

namespace velkor::cli {
namespace {

std::vector<std::string> OptionsOf(const CLI::App& command) {
  std::vector<std::string> options;
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_lnames()) {
      options.push_back("--" + name);
    }
  }
  return options;
}

std::vector<std::string> CommandsOf(const CLI::App& app) {
  std::vector<std::string> commands;
  for (const CLI::App* command : app.get_subcommands({})) {
    commands.push_back(command->get_name());
  }
  return commands;
}

// What nothing takes; none where something else is wrong.
std::optional<std::string> Unknown(const CLI::App& app) {
  const std::vector<std::string> extras = app.remaining(true);
  if (extras.empty()) {
    return std::nullopt;
  }
  const std::vector<CLI::App*> chosen = app.get_subcommands();
  const std::string given = extras.front().substr(0, extras.front().find('='));
  if (given.starts_with('-')) {
    const CLI::App& command = chosen.empty() ? app : *chosen.front();
    return "there is no option " + given + DidYouMean(given, OptionsOf(command));
  }
  if (chosen.empty()) {
    return "there is no command \"" + given + "\"" + DidYouMean(given, CommandsOf(app));
  }
  return "\"" + extras.front() + "\" is one argument too many for " + chosen.front()->get_name();
}

}  // namespace

std::string DidYouMean(const std::string& given, const std::vector<std::string>& words) {
  const std::string nearest = NearestWord(given, words);
  return nearest.empty() ? "" : "; did you mean " + nearest + "?";
}

std::string UsageError(const CLI::App& app, const CLI::ParseError& error) {
  std::string text = reports::OneLine(Unknown(app).value_or(error.what()));
  if (!text.ends_with('.') && !text.ends_with('?')) {
    text += '.';
  }
  return text;
}

}  // namespace velkor::cli
