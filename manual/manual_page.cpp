#include "manual/manual_page.h"

#include <algorithm>
#include <cctype>

#include "manual/roff.h"
#include "messages/product_version.h"

namespace velkor::manual {
namespace {

bool IsHidden(const CLI::Option& option) {
  return option.get_group().empty();
}

// "--format" and what it takes; "-q, --quiet"; "INPUT".
std::string Tag(const CLI::Option& option) {
  if (option.get_positional()) {
    return Italic(option.get_name(true, false));
  }
  std::string tag;
  for (const std::string& name : option.get_snames()) {
    tag += (tag.empty() ? "" : ", ") + Bold("-" + name);
  }
  for (const std::string& name : option.get_lnames()) {
    tag += (tag.empty() ? "" : ", ") + Bold("--" + name);
  }
  const bool takesValue = option.get_items_expected_max() > 0;
  return takesValue ? tag + " " + Italic(option.get_option_text()) : tag;
}

std::string CallOf(const CLI::Option& option) {
  const bool isRequired = option.get_required();
  std::string call = isRequired ? Tag(option) : "[" + Tag(option) + "]";
  const bool isRepeated = !option.get_positional() && option.get_items_expected_max() > 1;
  return isRepeated ? call + "..." : call;
}

std::string Upper(std::string text) {
  std::ranges::transform(text, text.begin(), [](unsigned char c) {
    return static_cast<char>(std::toupper(c));
  });
  return text;
}

}  // namespace

std::string Tagged(const std::string& tag, const std::string& text) {
  return ".TP\n" + tag + "\n" + Lines(Sentence(text)) + "\n";
}

ManualPage::ManualPage(const std::string& caption, const std::string& text)
    : caption_(caption), name_(caption) {
  std::ranges::replace(name_, ' ', '-');
  text_ = ".TH \"" + Roff(Upper(name_)) + "\" 1 \"" + std::string(ProductDate()) + "\" \"" +
          Roff(ProductNameAndVersion()) + "\"\n.SH NAME\n" + Roff(name_) + " \\- " + Roff(text) +
          "\n";
}

void ManualPage::AddCalling(const CLI::App& parser) {
  std::string calls;
  for (const bool positional : {true, false}) {
    for (const CLI::Option* option : parser.get_options()) {
      if (!IsHidden(*option) && option->get_positional() == positional) {
        calls += CallOf(*option) + "\n";
      }
    }
  }
  const bool hasCommands = !parser.get_subcommands({}).empty();
  AddSection("SYNOPSIS", Bold(caption_) + "\n" + calls +
                             (hasCommands ? Italic("COMMAND") + " ...\n" : std::string()));
}

void ManualPage::AddArguments(const CLI::App& parser) {
  std::string arguments;
  std::string options;
  for (const CLI::Option* option : parser.get_options()) {
    if (!IsHidden(*option)) {
      (option->get_positional() ? arguments : options) +=
          Tagged(Tag(*option), option->get_description());
    }
  }
  if (!arguments.empty()) {
    AddSection("ARGUMENTS", arguments);
  }
  AddSection("OPTIONS", options);
}

void ManualPage::AddSection(const std::string& heading, const std::string& roff) {
  text_ += ".SH " + heading + "\n" + roff;
}

void ManualPage::AddSeeAlso(const std::vector<std::string>& pages) {
  std::string roff;
  for (const std::string& page : pages) {
    const size_t bracket = page.find('(');
    roff += (roff.empty() ? "" : ",\n") + (".BR " + Roff(page.substr(0, bracket))) + " " +
            page.substr(bracket);
  }
  AddSection("SEE ALSO", roff + "\n");
}

}  // namespace velkor::manual
