#include "ui/language.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <string>

namespace velkor::ui {
namespace {

TEST(LanguageChoice, TheStrongestSettingDecides) {
  const auto choose = [](const char* all, const char* messages, const char* lang,
                         bool system = false) {
    return ChooseLanguage({all, messages, lang}, system) == Language::kJapanese;
  };
  EXPECT_TRUE(choose("ja_JP.UTF-8", "C", "en_US.UTF-8"));
  EXPECT_TRUE(choose("", "ja", "en_US.UTF-8"));
  EXPECT_TRUE(choose(nullptr, "", "ja.SJIS"));
  EXPECT_FALSE(choose("C", "ja_JP", "ja_JP", true));
  EXPECT_FALSE(choose(nullptr, nullptr, "jam_JM"));
  EXPECT_FALSE(choose(nullptr, nullptr, "j"));
  EXPECT_TRUE(choose(nullptr, "", nullptr, true));
  EXPECT_FALSE(choose(nullptr, "", nullptr, false));
}

std::map<uint32_t, std::string> Texts(const std::string& file) {
  std::ifstream lines(VELKOR_SOURCE_DIR "/src/resources/" + file + ".txt");
  std::map<uint32_t, std::string> texts;
  for (std::string line; std::getline(lines, line);) {
    if (line.find_first_of("0123456789") == 0) {
      const size_t blank = line.find(' ');
      EXPECT_TRUE(texts.emplace(std::stoul(line), line.substr(blank + 1)).second) << line;
    }
  }
  return texts;
}

// The code, the arguments in the order in which they are taken, and whatever else both sets need.
std::string Shape(const std::string& text) {
  static const std::regex parts(R"(^[EIW]\d{4} |%(\.0)?s|%lu|%c|%|\{\}|\\n|&|\||\.\.\.$)");
  std::string taken;
  std::string rest;
  for (std::sregex_iterator i(text.begin(), text.end(), parts), end; i != end; ++i) {
    EXPECT_NE(i->str(), "%") << text;
    (i->str()[0] == '%' ? taken : rest) += i->str() == "%.0s" ? "%s" : i->str();
  }
  std::sort(rest.begin(), rest.end());
  return taken + rest;
}

TEST(LanguageTexts, BothSetsHaveTheSameKeysAndShapesInEveryCodePage) {
  const CodePage utf8 = CodePage::Utf8();
  const CodePage shiftJis = CodePage::ShiftJis();
  const StkMessages messages = WindowMessages(utf8, Language::kJapanese);
  const StkMessages converted = WindowMessages(shiftJis, Language::kJapanese);
  for (const std::string file : {"catalogue", "window"}) {
    const auto english = Texts(file + ".en");
    const auto japanese = Texts(file + ".ja");
    EXPECT_GT(english.size(), 50U);
    EXPECT_EQ(japanese.size(), english.size());
    for (const auto& [key, text] : english) {
      ASSERT_TRUE(japanese.contains(key)) << key;
      EXPECT_EQ(Shape(japanese.at(key)), Shape(text)) << key;
      const std::string_view shown = messages.Text(MessageKey{key});
      EXPECT_NE(shown, "") << key;
      EXPECT_EQ(shiftJis.ToUtf8(converted.Text(MessageKey{key})), shown) << key;
    }
  }
}

}  // namespace
}  // namespace velkor::ui
