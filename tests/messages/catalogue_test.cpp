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

// What each message is given, in order: s a text, n a number, c a character. A key that is not
// named takes nothing.
std::string ArgumentKinds(uint32_t key) {
  static const std::map<uint32_t, std::string> kinds = {
      {40000, "s"},   {40001, "s"},   {40002, "s"},  {40100, "s"},   {40101, "s"},   {40102, "s"},
      {40104, "s"},   {40105, "snn"}, {40106, "sn"}, {40107, "s"},   {40110, "ssn"}, {40111, "ssn"},
      {40112, "ssn"}, {40113, "ssn"}, {40114, "sn"}, {40115, "ssn"}, {40116, "sn"},  {40117, "sn"},
      {40118, "sn"},  {40119, "sn"},  {40123, "sn"}, {40124, "snn"}, {40125, "sn"},  {40126, "sn"},
      {40127, "sss"}, {40128, "sn"},  {40129, "s"},  {40131, "sss"}, {40132, "ssn"}, {40133, "s"},
      {40134, "s"},   {40135, "s"},   {40140, "s"},  {40162, "c"},   {40163, "c"},   {40164, "s"},
      {40165, "sss"}, {40166, "sss"}, {40202, "s"},  {40301, "s"},   {40302, "s"},   {40303, "s"},
      {40304, "s"},   {40305, "s"},   {40306, "s"},  {40307, "ss"},  {40308, "s"},   {40901, "ss"},
      {41011, "n"},   {41013, "n"},   {41014, "s"},  {41015, "s"},   {42020, "s"}};
  const auto found = kinds.find(key);
  return found == kinds.end() ? "" : found->second;
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

TEST_F(Catalogue, EveryKeyHasATextThatFitsItsArguments) {
  const auto keys = AllKeys();
  ASSERT_GT(keys.size(), 60U);
  for (const auto& [name, key] : keys) {
    const std::string_view text = messages_.Text(MessageKey{key});
    EXPECT_FALSE(text.empty()) << name;
    EXPECT_EQ(PlaceholderKinds(text), ArgumentKinds(key)) << name;
  }
}

TEST_F(Catalogue, CodedMessagesBeginWithTheCodeOfTheirKey) {
  size_t coded = 0;
  for (const auto& [name, key] : AllKeys()) {
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
    EXPECT_EQ(PlaceholderKinds(text), ArgumentKinds(key)) << name;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'),
              std::count(english.begin(), english.end(), '\n'))
        << name;
    if (key < 40300 || key == 40901) {
      EXPECT_TRUE(key < 40000 || text.substr(0, 6) == english.substr(0, 6)) << name;
    }
    EXPECT_EQ(shiftJis.ToUtf8(converted.Text(MessageKey{key})), text) << name;
  }
}

TEST_F(Catalogue, HoldsNoLineThatNoKeyNames) {
  std::istringstream lines(ReadSource("resources/catalogue.en.txt"));
  std::map<uint32_t, int> left;
  for (const auto& entry : AllKeys()) {
    ++left[entry.second];
  }
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with('#')) {
      --left[static_cast<uint32_t>(std::stoul(line))];
    }
  }
  for (const auto& [key, count] : left) {
    EXPECT_EQ(count, 0) << key;
  }
}

TEST_F(Catalogue, FullTexts) {
  const auto format = [this](MessageKey key, MessageArguments arguments) {
    return messages_.FormatMessageText(key, arguments);
  };
  const std::string_view limit = messages_.Text(MessageKey::kSizeLimitText);
  EXPECT_EQ(format(MessageKey::kW9465, {"main", limit, "main"}),
            "W9465 Total stack size exceeds 65535 in function (main).\nReduce recursion depth.");
  EXPECT_EQ(format(MessageKey::kW9427, {"C:\\d\\lt.txt", "velkor", "lt.txt"}),
            "W9427 Cannot find stack size specification file for system library functions "
            "(C:\\d\\lt.txt).\nDefault values (the same as lt.txt) are used.");
  EXPECT_EQ(format(MessageKey::kW9405, {"a.asm", 7U, 5119U}),
            "W9405 Too many characters in one line in file (a.asm:line 7).\nThe limit is 5119.");
  EXPECT_EQ(format(MessageKey::kW9424, {"a.psg", 3U, 4294967295U}),
            "W9424 Multiple specifications for one function in file (a.psg:line 3, line "
            "4294967295).\nOnly one is allowed.");
  EXPECT_EQ(format(MessageKey::kW9462, {'-'}), "W9462 Illegal value (-) for additional margin.");
  EXPECT_EQ(format(MessageKey::kW9430, {}),
            "W9430 Cannot find CCTarn generated assembler source module file.\nSelect Havel's "
            "menu ([Tool]-[Compiler Options]) and check both \"Create Assembler Source Module "
            "File\" in [Output] tab and \"Output Debugging Information\" in [Debug] tab and then "
            "rebuild.");
  EXPECT_EQ(format(MessageKey::kTableFilePattern, {"r"}), "..\\dattarn\\ltr.txt");
  EXPECT_EQ(format(MessageKey::kStopReadingQuestion, {}), "\nDo you want to stop reading?");
}

}  // namespace
}  // namespace velkor
