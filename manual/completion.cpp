#include "manual/completion.h"

#include <algorithm>
#include <functional>

namespace velkor::manual {
namespace {

// One line of a table: what the word of a command, or of a command and an option, stands for.
std::string Row(const std::string& key, const std::string& value) {
  return "    '" + key + "') echo '" + value + "' ;;\n";
}

std::string Table(const std::string& name, const std::string& rows) {
  return name + "() {\n  case \"$*\" in\n" + rows + "  esac\n}\n";
}

std::vector<const CLI::Option*> Shown(const CLI::App& command, bool positional) {
  std::vector<const CLI::Option*> shown;
  std::ranges::copy_if(command.get_options(), std::back_inserter(shown),
                       [positional](const CLI::Option* option) {
                         return !option->get_group().empty() &&
                                option->get_positional() == positional;
                       });
  return shown;
}

std::string OptionWords(const CLI::App& command) {
  std::string words;
  for (const CLI::Option* option : Shown(command, false)) {
    for (const std::string& name : option->get_lnames()) {
      words += (words.empty() ? "--" : " --") + name;
    }
  }
  return words;
}

// "choices text json", "file", "folder", "function", "entry", or "other" for what nothing can be
// said about.
std::string ValueKind(const CLI::Option& option) {
  std::string text = option.get_option_text();
  if (text.find('|') != std::string::npos) {
    std::ranges::replace(text, '|', ' ');
    return "choices " + text;
  }
  if (text.starts_with("FILE")) {
    return "file";
  }
  if (text == "DIR") {
    return "folder";
  }
  if (text == "ENTRY=BYTES") {
    return "entry";
  }
  return option.check_lname("function") || option.check_lname("callee") ? "function" : "other";
}

std::string ValueRows(const CLI::App& command) {
  std::string rows;
  for (const CLI::Option* option : Shown(command, false)) {
    if (option->get_items_expected_max() > 0) {
      for (const std::string& name : option->get_lnames()) {
        rows += Row(command.get_name() + " --" + name, ValueKind(*option));
      }
    }
  }
  return rows;
}

std::string ArgumentWords(const CLI::App& command) {
  std::string words;
  for (const CLI::Option* option : Shown(command, true)) {
    words += (words.empty() ? "" : " ") + option->get_name(true, false);
  }
  return words;
}

}  // namespace

std::string CompletionTables(const CLI::App& app) {
  std::string commands;
  std::string options;
  std::string values;
  std::string arguments;
  for (const CLI::App* command : app.get_subcommands({})) {
    commands += (commands.empty() ? "" : " ") + command->get_name();
    options += Row(command->get_name(), OptionWords(*command));
    values += ValueRows(*command);
    arguments += Row(command->get_name(), ArgumentWords(*command));
  }
  return "_velkor_cli_commands='" + commands + "'\n" + Table("_velkor_cli_options", options) +
         Table("_velkor_cli_value", values) + Table("_velkor_cli_arguments", arguments);
}

}  // namespace velkor::manual
