#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace velkor::manual {

// The man page of a program, or of one of its commands, in section 1: what --help says, from the
// same parser.
class ManualPage {
 public:
  // caption: the words that call it, "velkor-cli analyze". text: what it does.
  ManualPage(const std::string& caption, const std::string& text);

  // Of its parser: how it is called, what it takes.
  void AddCalling(const CLI::App& parser);
  void AddArguments(const CLI::App& parser);
  // A section; roff as it stands.
  void AddSection(const std::string& heading, const std::string& roff);
  void AddSeeAlso(const std::vector<std::string>& pages);

  // "velkor-cli-analyze"
  const std::string& Name() const { return name_; }
  const std::string& Text() const { return text_; }

 private:
  std::string caption_;
  std::string name_;
  std::string text_;
};

// A paragraph with a tag, as lists of options have it. tag: roff. text: plain.
std::string Tagged(const std::string& tag, const std::string& text);

}  // namespace velkor::manual
