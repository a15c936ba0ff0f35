#include "messages/catalogue.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <string>

#include "platform/limits.h"

namespace velkor {
namespace {

using namespace std::string_literals;

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

class Catalogue : public ::testing::Test {
 protected:
  CodePage codePage_ = CodePage::Utf8();
  StkMessages messages_ = StkMessages::English(codePage_);
};

TEST_F(Catalogue, EveryKeyHasATextThatBeginsWithItsCode) {
  std::map<char, size_t> coded;
  for (const auto& [name, key] : AllKeys()) {
    const StkMessage message = messages_.MakeMessage(MessageKey{key}, {});
    EXPECT_FALSE(message.text.empty()) << name;
    const std::string code = message.Code();
    const bool named = name.size() >= 5 && std::all_of(name.begin() + 1, name.begin() + 5,
                                                       [](char c) { return c >= '0' && c <= '9'; });
    EXPECT_EQ(code, named ? name.substr(0, 5) : "");
    if (named) {
      ++coded[code[0]];
      EXPECT_TRUE(message.text.starts_with(code + " ")) << name;
    }
    EXPECT_EQ(message.GetSeverity(), code.empty() || code[0] == 'I' ? Severity::kInformation
                                     : code[0] == 'W'               ? Severity::kWarning
                                                                    : Severity::kError)
        << name;
  }
  EXPECT_EQ(coded, (std::map<char, size_t>{{'E', 5}, {'I', 3}, {'W', 44}}));
}

TEST_F(Catalogue, ARecordKnowsItsTextFileAndLine) {
  const StkMessage twice = messages_.MakeMessage(
      MessageKey::kW9424, {MessageFile{"a.psg"}, 3U, MessageLine{4294967295U}});
  EXPECT_EQ(twice.key, MessageKey::kW9424);
  EXPECT_EQ(twice.text,
            "W9424 Multiple specifications for one function in file (a.psg:line 3, line "
            "4294967295).\nOnly one is allowed.");
  EXPECT_EQ(twice.file, "a.psg");
  EXPECT_EQ(twice.line, 4294967295U);

  // What the text does not show.
  const StkMessage broken =
      messages_.MakeMessage(MessageKey::kW9429, {MessageFile{"a.psg"}, MessageLine{2}});
  EXPECT_EQ(broken.text, "W9429 Broken stk system file (a.psg).\nThe file was ignored.");
  EXPECT_EQ(broken.line, 2U);

  const StkMessage over = messages_.MakeMessage(MessageKey::kW9465, {"main", "65535", "main"});
  EXPECT_EQ(over.text,
            "W9465 Total stack size exceeds 65535 in function (main).\nReduce recursion depth.");
  EXPECT_EQ(over.file + std::to_string(over.line), "0");
}

constexpr MessageKey kKey{1};

std::string Format(std::string_view text, MessageArguments arguments,
                   const CodePage& codePage = CodePage::Utf8()) {
  return StkMessages(codePage, {"1 " + std::string(text)}).FormatMessageText(kKey, arguments);
}

TEST(Texts, CatalogueLines) {
  const CodePage codePage = CodePage::Utf8();
  const StkMessages messages(codePage,
                             {"# 1 comment\n\nno key\n1 a\\nb\\\\n\\t\\\n2  two\n7\n3x no\n9 end"});
  EXPECT_EQ(messages.Text(kKey), "a\nb\\n\\t\\");
  EXPECT_EQ(messages.Text(MessageKey{2}), " two");
  EXPECT_EQ(messages.Text(MessageKey{9}), "end");
  for (const uint32_t missing : {0U, 3U, 7U}) {
    EXPECT_EQ(messages.Text(MessageKey{missing}), "");
    EXPECT_EQ(messages.FormatMessageText(MessageKey{missing}, {"x"}), "");
  }
}

TEST(Texts, TextsAreConvertedToTheCodePage) {
  // A character whose second byte is a backslash there, followed by one that is an escape.
  const CodePage codePage = CodePage::ShiftJis();
  EXPECT_EQ(StkMessages(codePage, {"1 \u30BD\\n\\\\"}).Text(kKey), "\x83\\\n\\");
}

TEST(Texts, LaterCataloguesAddAndReplaceWhatTheCodePageCanShow) {
  const auto text = [](const CodePage& codePage, uint32_t key) {
    const StkMessages messages(codePage,
                               {"1 one\n2 two", "2 \u4E8C\n3 \u00E9", "3 three\n4 \u56DB"});
    return std::string(messages.Text(MessageKey{key}));
  };
  EXPECT_EQ(text(CodePage::Utf8(), 1), "one");
  EXPECT_EQ(text(CodePage::Utf8(), 2), "\u4E8C");
  EXPECT_EQ(text(CodePage::Utf8(), 3), "three");
  EXPECT_EQ(text(CodePage::Utf8(), 4), "\u56DB");
  EXPECT_EQ(text(CodePage::Latin1(), 2), "two");
  EXPECT_EQ(text(CodePage::Latin1(), 4), "");
}

TEST(Texts, PlaceholdersTakeTheArgumentsInOrder) {
  EXPECT_EQ(Format("%s-%lu-%c-%.0s%s%%", {"a", 0U, "x", "hidden", "b"}), "a-0-x-b%");
  EXPECT_EQ(Format("%s|%s", {"%s%lu%%\n", "b"}), "%s%lu%%\n|b");
  EXPECT_EQ(Format("[%s]", {"a\0b"s}), "[a\0b]"s);
  EXPECT_EQ(Format("50% of %d%", {"x"}), "50% of %d%");
  // Without a fitting argument nothing is shown.
  EXPECT_EQ(Format("%s(%lu)%s", {"a"}), "a()");
  EXPECT_EQ(Format("%s,%lu,%c,%s", {1U, "a", 2U, "c"}), ",,,c");
}

TEST(Texts, AMessageIsCutAtACharacterBorder) {
  const size_t limit = kMaxTextLength;
  const std::string fits(limit - 2, 'a');
  EXPECT_EQ(Format("(%s)", {fits}), "(" + fits + ")");
  EXPECT_EQ(Format("(%s)%lu", {fits, 7U}), "(" + fits + ")");
  EXPECT_EQ(Format("(%s\xE3\x81\x82", {fits}), "(" + fits);
  EXPECT_EQ(Format("%s\xE3\x81\x82", {std::string(limit - 3, 'a')}).size(), limit);

  const std::string doubleBytes = "%s\u3042\u3042";
  EXPECT_EQ(Format(doubleBytes, {fits}, CodePage::ShiftJis()).size(), limit);
  EXPECT_EQ(Format(doubleBytes, {fits + "a"}, CodePage::ShiftJis()).size(), limit - 1);
  EXPECT_EQ(Format("%s\u00C2\u00A0", {fits}, CodePage::Latin1()).size(), limit);
}

}  // namespace
}  // namespace velkor
