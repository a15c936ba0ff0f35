#include "messages/messages.h"

#include <gtest/gtest.h>

namespace velkor {
namespace {

using namespace std::string_literals;

constexpr MessageKey kKey{1};

std::string Format(std::string_view text, MessageArguments arguments,
                   const CodePage& codePage = CodePage::Utf8()) {
  return StkMessages(codePage, {"1 " + std::string(text)}).FormatMessageText(kKey, arguments);
}

TEST(Messages, CatalogueLines) {
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

TEST(Messages, TextsAreConvertedToTheCodePage) {
  // A character whose second byte is a backslash there, followed by one that is an escape.
  const CodePage codePage = CodePage::ShiftJis();
  EXPECT_EQ(StkMessages(codePage, {"1 \u30BD\\n\\\\"}).Text(kKey), "\x83\\\n\\");
}

TEST(Messages, LaterCataloguesAddAndReplaceWhatTheCodePageCanShow) {
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

TEST(Messages, PlaceholdersTakeTheArgumentsInOrder) {
  EXPECT_EQ(Format("%s-%lu-%c-%.0s%s%%", {"a", 0U, "x", "hidden", "b"}), "a-0-x-b%");
  EXPECT_EQ(Format("%s|%s", {"%s%lu%%\n", "b"}), "%s%lu%%\n|b");
  EXPECT_EQ(Format("[%s]", {"a\0b"s}), "[a\0b]"s);
  EXPECT_EQ(Format("50% of %d%", {"x"}), "50% of %d%");
  // Without a fitting argument nothing is shown.
  EXPECT_EQ(Format("%s(%lu)%s", {"a"}), "a()");
  EXPECT_EQ(Format("%s,%lu,%c,%s", {1U, "a", 2U, "c"}), ",,,c");
}

TEST(Messages, AMessageIsCutAtACharacterBorder) {
  const size_t limit = StkMessages::kMaxMessageLength;
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
