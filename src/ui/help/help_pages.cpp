#include "ui/help/help_pages.h"

#include <array>

#include "ui/help/help_location.h"

namespace velkor::embedded {
extern const std::string_view helpWindowEnglish;
extern const std::string_view helpListsEnglish;
extern const std::string_view helpAdjustEnglish;
extern const std::string_view helpWindowJapanese;
extern const std::string_view helpListsJapanese;
extern const std::string_view helpAdjustJapanese;
}  // namespace velkor::embedded

namespace velkor::ui {

namespace {

struct Page {
  std::string_view name;
  const std::string_view& english;
  const std::string_view& japanese;
};

// By topic, from 1.
constexpr std::array<Page, kHelpTopicCount> kPages = {{
    {"window.html", embedded::helpWindowEnglish, embedded::helpWindowJapanese},
    {"lists.html", embedded::helpListsEnglish, embedded::helpListsJapanese},
    {"adjust.html", embedded::helpAdjustEnglish, embedded::helpAdjustJapanese},
}};

}  // namespace

std::string_view HelpPageName(int topic) {
  return kPages.at(static_cast<size_t>(topic - 1)).name;
}

std::string_view EmbeddedHelpPage(std::string_view name, Language language) {
  for (const Page& page : kPages) {
    if (page.name == name) {
      return language == Language::kJapanese ? page.japanese : page.english;
    }
  }
  return {};
}

}  // namespace velkor::ui
