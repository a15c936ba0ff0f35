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

std::map<uint32_t, std::string> Texts(const std::string& language) {
  std::ifstream lines(VELKOR_SOURCE_DIR "/src/resources/window." + language + ".txt");
  std::map<uint32_t, std::string> texts;
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with('#')) {
      const size_t blank = line.find(' ');
      EXPECT_TRUE(texts.emplace(std::stoul(line), line.substr(blank + 1)).second) << line;
    }
  }
  return texts;
}

std::string Shape(const std::string& text) {
  static const std::regex parts(R"(%s|%lu|\\n|&|\||\.\.\.$)");
  std::string shape;
  for (std::sregex_iterator i(text.begin(), text.end(), parts), end; i != end; ++i) {
    shape += i->str();
  }
  std::sort(shape.begin(), shape.end());
  return shape;
}

TEST(WindowTexts, BothSetsHaveTheSameKeysAndShapes) {
  const auto english = Texts("en");
  const auto japanese = Texts("ja");
  EXPECT_GT(english.size(), 80U);
  for (const auto& [key, text] : english) {
    ASSERT_TRUE(japanese.contains(key)) << key;
    EXPECT_EQ(Shape(japanese.at(key)), Shape(text)) << key;
  }
  EXPECT_EQ(japanese.size(), english.size());
}

}  // namespace
}  // namespace velkor::ui
