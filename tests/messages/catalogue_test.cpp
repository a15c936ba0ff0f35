#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <string>

#include "messages/messages.h"

namespace velkor {
namespace {

std::string ReadSource(const std::string& path) {
  std::ifstream file(std::string(VELKOR_SOURCE_DIR) + "/src/" + path);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

// Name to number, as the enumeration states them.
std::map<std::string, uint32_t> AllKeys() {
  std::istringstream lines(ReadSource("messages/message_key.h"));
  std::map<std::string, uint32_t> keys;
  for (std::string line; std::getline(lines, line);) {
    const size_t equals = line.find(" = ");
    if (line.starts_with("  k") && equals != std::string::npos) {
      keys[line.substr(3, equals - 3)] = static_cast<uint32_t>(std::stoul(line.substr(equals + 3)));
    }
  }
  return keys;
}

// The kinds that the text's placeholders ask for; "?" for a "%" that is none of them.
std::string PlaceholderKinds(std::string_view text) {
  std::string kinds;
  for (size_t i = text.find('%'); i != std::string_view::npos; i = text.find('%', i + 1)) {
    const std::string_view rest = text.substr(i);
    kinds += rest.starts_with("%s") || rest.starts_with("%.0s") ? 's'
             : rest.starts_with("%lu")                          ? 'n'
             : rest.starts_with("%c")                           ? 'c'
                                                                : '?';
  }
  return kinds;
}

class Catalogue : public ::testing::Test {
 protected:
  CodePage codePage_ = CodePage::Utf8();
  StkMessages messages_ = StkMessages::English(codePage_);
};

TEST_F(Catalogue, EveryKeyHasATextThatBeginsWithItsCode) {
  size_t coded = 0;
  for (const auto& [name, key] : AllKeys()) {
    EXPECT_FALSE(messages_.Text(MessageKey{key}).empty()) << name;
    std::string code;
    if (key >= 40201 && key <= 40203) {
      code = "I" + std::to_string(key - 40201 + 9501);
    } else if (key >= 40000 && key < 40200) {
      code = (key < 40100 ? "E" : "W") + std::to_string(key - 40000 + 9300);
    } else {
      continue;
    }
    ++coded;
    EXPECT_EQ(name, code);
    EXPECT_TRUE(messages_.Text(MessageKey{key}).starts_with(code + " ")) << name;
  }
  EXPECT_EQ(coded, 46U);
  EXPECT_TRUE(messages_.Text(MessageKey::kW9432NoLine).starts_with("W9432 "));
}

TEST_F(Catalogue, TheJapaneseSetHasEveryTextWithTheSameArguments) {
  const StkMessages japanese(codePage_, {StkMessages::JapaneseCatalogue()});
  const CodePage shiftJis = CodePage::ShiftJis();
  const StkMessages converted(shiftJis, {StkMessages::JapaneseCatalogue()});
  for (const auto& [name, key] : AllKeys()) {
    const std::string_view english = messages_.Text(MessageKey{key});
    const std::string_view text = japanese.Text(MessageKey{key});
    EXPECT_EQ(PlaceholderKinds(text), PlaceholderKinds(english)) << name;
    EXPECT_EQ(PlaceholderKinds(text).find('?'), std::string::npos) << name;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'),
              std::count(english.begin(), english.end(), '\n'))
        << name;
    if (key < 40300 || key == 40901) {
      EXPECT_TRUE(key < 40000 || text.substr(0, 6) == english.substr(0, 6)) << name;
    }
    EXPECT_EQ(shiftJis.ToUtf8(converted.Text(MessageKey{key})), text) << name;
  }
}

TEST_F(Catalogue, FullTexts) {
  const auto format = [this](MessageKey key, MessageArguments arguments) {
    return messages_.FormatMessageText(key, arguments);
  };
  EXPECT_EQ(format(MessageKey::kW9465, {"main", "65535", "main"}),
            "W9465 Total stack size exceeds 65535 in function (main).\nReduce recursion depth.");
  EXPECT_EQ(format(MessageKey::kW9427, {"C:\\d\\lt.txt", "velkor", "lt.txt"}),
            "W9427 Cannot find stack size specification file for system library functions "
            "(C:\\d\\lt.txt).\nDefault values (the same as lt.txt) are used.");
  EXPECT_EQ(format(MessageKey::kW9424, {"a.psg", 3U, 4294967295U}),
            "W9424 Multiple specifications for one function in file (a.psg:line 3, line "
            "4294967295).\nOnly one is allowed.");
  EXPECT_EQ(format(MessageKey::kW9462, {"-"}), "W9462 Illegal value (-) for additional margin.");
  EXPECT_EQ(format(MessageKey::kW9430, {}),
            "W9430 Cannot find CCTarn generated assembler source module file.\nSelect Havel's "
            "menu ([Tool]-[Compiler Options]) and check both \"Create Assembler Source Module "
            "File\" in [Output] tab and \"Output Debugging Information\" in [Debug] tab and then "
            "rebuild.");
  EXPECT_EQ(format(MessageKey::kTableFilePattern, {"r"}), "..\\dattarn\\ltr.txt");
}

}  // namespace
}  // namespace velkor
