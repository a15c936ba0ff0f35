#include "ui/language.h"

#include <QLocale>
#include <cctype>
#include <cstdlib>
#include <string_view>

namespace velkor::embedded {
extern const std::string_view englishWindowTexts;
extern const std::string_view japaneseWindowTexts;
}  // namespace velkor::embedded

namespace velkor::ui {

Language ChooseLanguage(std::initializer_list<const char*> settings, bool systemIsJapanese) {
  for (const char* setting : settings) {
    const std::string_view text = setting == nullptr ? "" : setting;
    if (!text.empty()) {
      const bool wholeCode =
          text.size() <= 2 || std::isalpha(static_cast<unsigned char>(text[2])) == 0;
      return text.starts_with("ja") && wholeCode ? Language::kJapanese : Language::kEnglish;
    }
  }
  return systemIsJapanese ? Language::kJapanese : Language::kEnglish;
}

Language UserLanguage() {
  // Nothing in this program changes the environment.
  // NOLINTNEXTLINE(concurrency-mt-unsafe)
  return ChooseLanguage({std::getenv("LC_ALL"), std::getenv("LC_MESSAGES"), std::getenv("LANG")},
                        QLocale::system().language() == QLocale::Japanese);
}

StkMessages WindowMessages(const CodePage& codePage, Language language) {
  if (language == Language::kEnglish) {
    return {codePage, {StkMessages::EnglishCatalogue(), embedded::englishWindowTexts}};
  }
  return {codePage,
          {StkMessages::EnglishCatalogue(), embedded::englishWindowTexts,
           StkMessages::JapaneseCatalogue(), embedded::japaneseWindowTexts}};
}

}  // namespace velkor::ui
