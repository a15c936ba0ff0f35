#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <utility>
#include <vector>

namespace velkor::cli {

// "; did you mean analyze?", or nothing where no word is near.
std::string DidYouMean(const std::string& given, const std::vector<std::string>& words);

// What is wrong with the arguments, for the user: the misspelt command or option with the nearest
// one, else what the parser says.
std::string UsageError(const CLI::App& app, const CLI::ParseError& error);

// An option whose value is one of a few words; another one is refused with the nearest of them.
template <typename Value>
CLI::Option* AddChoice(CLI::App& command, const std::string& name, Value& value,
                       std::vector<std::pair<std::string, Value>> choices,
                       const std::string& help) {
  std::string shown;
  for (const auto& choice : choices) {
    shown += (shown.empty() ? "" : "|") + choice.first;
  }
  const auto choose = [&value, name, choices = std::move(choices)](const std::string& given) {
    std::vector<std::string> words;
    for (const auto& [word, meant] : choices) {
      if (word == given) {
        value = meant;
        return;
      }
      words.push_back(word);
    }
    throw CLI::ValidationError(name, "\"" + given + "\" is none of " +
                                         CLI::detail::join(words, ", ") + DidYouMean(given, words));
  };
  return command.add_option_function<std::string>(name, choose, help)->option_text(shown);
}

}  // namespace velkor::cli
