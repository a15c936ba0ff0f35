#include "platform/code_page.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace velkor {
namespace {

std::vector<CodePage> AllKinds() {
  return {CodePage::Utf8(), CodePage::ShiftJis(), CodePage::Latin1(),
          *CodePage::FromName("cp1251")};
}

std::vector<size_t> Lengths(const CodePage& page, std::string_view text) {
  std::vector<size_t> lengths;
  for (size_t position = 0; position < text.size();) {
    lengths.push_back(page.CharLength(text, position));
    position += lengths.back();
  }
  return lengths;
}

TEST(CodePageTest, NamesInTheirUsualSpellings) {
  for (const char* name : {"utf-8", "UTF8", " Utf_8 ", "cp65001"}) {
    EXPECT_EQ(CodePage::FromName(name)->GetKind(), CodePage::Kind::kUtf8) << name;
  }
  for (const char* name : {"932", "CP932", "shift-jis", "Shift_JIS", "sjis", "windows-31j"}) {
    EXPECT_EQ(CodePage::FromName(name)->GetKind(), CodePage::Kind::kShiftJis) << name;
  }
  for (const char* name : {"cp1252", "1252", "windows-1252", "Windows_1252", "iso-8859-1",
                           "ISO_8859-15", "latin1", "koi8-r", "us-ascii"}) {
    const auto page = CodePage::FromName(name);
    ASSERT_TRUE(page) << name;
    EXPECT_EQ(page->GetKind(), CodePage::Kind::kSingleByte) << name;
  }
  // Unknown, of another kind, not over ASCII, or no name at all.
  for (const char* name : {"", "nonsense", "euc-jp", "utf-16", "utf-7", "gbk", "big5", "ebcdic-us",
                           "cp1252//TRANSLIT", "../x", "0"}) {
    EXPECT_FALSE(CodePage::FromName(name)) << name;
  }
  EXPECT_FALSE(CodePage::FromName(std::string(1 << 20, 'x')));
}

TEST(CodePageTest, StepsOverWellFormedCharactersAndSingleStrayBytes) {
  const CodePage utf8 = CodePage::Utf8();
  EXPECT_EQ(Lengths(utf8, "a\xC3\xA9\xE8\xA1\xA8\xF0\x9F\x98\x80"),
            (std::vector<size_t>{1, 2, 3, 4}));
  // Overlong, surrogate, beyond Unicode, cut off.
  for (const std::string text : {"\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                                 "\xF5\x80\x80\x80", "\xE8\xA1", "\xA1\xA8"}) {
    EXPECT_EQ(Lengths(utf8, text), std::vector<size_t>(text.size(), 1));
  }
  EXPECT_EQ(Lengths(utf8, "\xE8\xA1\xC3\xA9"), (std::vector<size_t>{1, 1, 2}));

  const CodePage shiftJis = CodePage::ShiftJis();
  EXPECT_EQ(Lengths(shiftJis, "\x95\x5C\\\xB1\xE0\x40\x81"), (std::vector<size_t>{2, 1, 1, 2, 1}));
  EXPECT_EQ(Lengths(shiftJis, "\x81\x7F\x81\xFD\x80\xA0\xFD"), std::vector<size_t>(7, 1));
  EXPECT_EQ(shiftJis.CharLength("a", 1), 0U);
  EXPECT_EQ(shiftJis.CharLength("a", 7), 0U);
}

TEST(CodePageTest, CharacterValueIsTheOrderOfSortedLists) {
  const CodePage shiftJis = CodePage::ShiftJis();
  EXPECT_GT(shiftJis.Compare("\x88\x9F", "\xB1"), 0);  // double-byte after half-width kana
  EXPECT_GT(CodePage::Latin1().Compare("\xB1", "\x88\x9F"), 0);
  for (const CodePage& page : AllKinds()) {
    EXPECT_GT(page.Compare("a", "B"), 0);
    EXPECT_LT(page.Compare("a", "aa"), 0);
    EXPECT_EQ(page.Compare("x\x81", "x\x81"), 0);
  }
}

TEST(CodePageTest, LetterCaseOfEveryScriptIsIgnored) {
  const CodePage utf8 = CodePage::Utf8();
  EXPECT_TRUE(utf8.EqualIgnoreCase("M\xC3\x84IN.C", "m\xC3\xA4in.c"));
  EXPECT_TRUE(utf8.EqualIgnoreCase("\xCF\x83\xD0\xB6\xD1\x8F", "\xCE\xA3\xD0\x96\xD0\xAF"));
  EXPECT_TRUE(utf8.EqualIgnoreCase("\xEF\xBD\x81", "\xEF\xBC\xA1"));          // full width
  EXPECT_TRUE(utf8.EqualIgnoreCase("\xF0\x90\x90\xA8", "\xF0\x90\x90\x80"));  // beyond 16 bits
  EXPECT_FALSE(utf8.EqualIgnoreCase("\xC4\xB1", "i"));                        // dotless i
  EXPECT_FALSE(utf8.EqualIgnoreCase("\xC5\xBF", "s"));                        // long s
  EXPECT_FALSE(utf8.EqualIgnoreCase("\xC3\x97", "\xC3\xB7"));                 // no letters

  const CodePage shiftJis = CodePage::ShiftJis();
  EXPECT_TRUE(shiftJis.EqualIgnoreCase("\x82\x81\x82\x9A", "\x82\x60\x82\x79"));
  EXPECT_TRUE(shiftJis.EqualIgnoreCase("\x83\xBF\x83\xD6", "\x83\x9F\x83\xB6"));
  EXPECT_TRUE(shiftJis.EqualIgnoreCase("\x84\x70\x84\x7E\x84\x80\x84\x91",
                                       "\x84\x40\x84\x4E\x84\x4F\x84\x60"));
  // Trail bytes that look like letters, and half-width kana, have no case.
  EXPECT_FALSE(shiftJis.EqualIgnoreCase("\x95\x61", "\x95\x41"));
  EXPECT_FALSE(shiftJis.EqualIgnoreCase("\xE4", "\xC4"));

  EXPECT_TRUE(CodePage::Latin1().EqualIgnoreCase("\xE4\xFE", "\xC4\xDE"));
  EXPECT_FALSE(CodePage::Latin1().EqualIgnoreCase("\xF7", "\xD7"));
  EXPECT_FALSE(CodePage::Latin1().EqualIgnoreCase("\xFF", "\xDF"));
  EXPECT_TRUE(CodePage::FromName("cp1252")->EqualIgnoreCase("\xFF\x9A", "\x9F\x8A"));
  EXPECT_TRUE(CodePage::FromName("koi8-r")->EqualIgnoreCase("\xC1\xA3", "\xE1\xB3"));
}

TEST(CodePageTest, BlanksAreWholeCharacters) {
  for (const CodePage& page : AllKinds()) {
    for (const char blank : {' ', '\t', '\n', '\v', '\f', '\r'}) {
      EXPECT_TRUE(page.IsBlank(std::string(1, blank), 0));
    }
    EXPECT_FALSE(page.IsBlank({"\0", 1}, 0));
    EXPECT_FALSE(page.IsBlank("a", 1));
  }
  EXPECT_TRUE(CodePage::Utf8().IsBlank("\xE3\x80\x80", 0));
  EXPECT_TRUE(CodePage::ShiftJis().IsBlank("\x81\x40", 0));
  EXPECT_FALSE(CodePage::Latin1().IsBlank("\xA0", 0));
}

TEST(CodePageTest, ConvertsBothWaysAndShowsWhatItCannot) {
  const std::string utf8 = "a\xE8\xA1\xA8\xEF\xBD\xB1";
  const CodePage shiftJis = CodePage::ShiftJis();
  EXPECT_EQ(shiftJis.ToUtf8("a\x95\x5C\xB1"), utf8);
  EXPECT_EQ(shiftJis.FromUtf8(utf8), "a\x95\x5C\xB1");
  EXPECT_EQ(shiftJis.ToUtf8("\x95:\\~"), "\xEF\xBF\xBD:\\~");
  EXPECT_EQ(shiftJis.FromUtf8("\xC3\xA9"), std::nullopt);
  EXPECT_EQ(shiftJis.FromUtf8("\xC2\xA5"), std::nullopt);  // a yen sign is no separator

  EXPECT_EQ(CodePage::Utf8().ToUtf8("\xE8\xA1x\xC3\xA9"), "\xEF\xBF\xBD\xEF\xBF\xBDx\xC3\xA9");
  EXPECT_EQ(CodePage::Utf8().FromUtf8("\xE8\xA1"), std::nullopt);
  const CodePage windows = *CodePage::FromName("cp1252");
  EXPECT_EQ(windows.ToUtf8("\x80\xE9\x81"), "\xE2\x82\xAC\xC3\xA9\xEF\xBF\xBD");
  EXPECT_EQ(windows.FromUtf8("\xE2\x82\xAC\xC3\xA9"), "\x80\xE9");
  EXPECT_EQ(windows.FromUtf8("\xEF\xBF\xBD"), std::nullopt);
  EXPECT_EQ(windows.FromUtf8("\xE8\xA1\xA8"), std::nullopt);
}

}  // namespace
}  // namespace velkor
