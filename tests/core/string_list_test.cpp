#include "core/string_list.h"

#include <gtest/gtest.h>
#include <string>

#include "core/file_table.h"

namespace velkor {
namespace {

TEST(StringList, KeepsTheFirstOfEqualTextsInOrder) {
  const CodePage codePage = CodePage::Utf8();
  for (const bool ignoringCase : {false, true}) {
    StkStringList list = ignoringCase ? StkStringList::IgnoringCase(codePage) : StkStringList();
    for (size_t i = 0; i < 1000; ++i) {  // long enough to pass from comparing to hashing
      const std::string number = std::to_string(i);
      ASSERT_TRUE(list.Add("\xC3\xA9n" + number));
      ASSERT_FALSE(list.Add("\xC3\xA9n" + number));
      ASSERT_EQ(list.Add("\xC3\x89N" + number), !ignoringCase);
      ASSERT_FALSE(list.Contains("n" + number));
      ASSERT_TRUE(list.Contains("\xC3\xA9n" + std::to_string(i / 2)));
    }
    EXPECT_EQ(list.size(), ignoringCase ? 1000U : 2000U);
    EXPECT_EQ(list[1], ignoringCase ? "\xC3\xA9n1" : "\xC3\x89N0");
    list.Clear();
    EXPECT_TRUE(list.empty());
    EXPECT_FALSE(list.Contains("\xC3\xA9n999"));
    EXPECT_TRUE(list.Add("\xC3\xA9n999"));
  }
}

TEST(StringList, TextsAreAnyBytes) {
  StkStringList list;
  EXPECT_TRUE(list.Add(""));
  EXPECT_FALSE(list.Add(""));
  EXPECT_TRUE(list.Add(std::string_view("a\0b", 3)));
  EXPECT_TRUE(list.Add("a"));
  EXPECT_FALSE(list.Contains(std::string_view("a\0c", 3)));
}

TEST(FileTable, FilesAreToldApartIgnoringCase) {
  const CodePage codePage = CodePage::Utf8();
  StkFileTable files(codePage);
  const StkFileEntry& main = files.Intern("C:\\p\\main.c");
  const StkFileEntry& other = files.Intern("C:\\q\\main.c");
  EXPECT_NE(&main, &other);
  for (int i = 0; i < 5000; ++i) {
    const StkFileEntry& entry = files.Intern("f" + std::to_string(i) + ".c");
    ASSERT_EQ(&files.Intern("F" + std::to_string(i) + ".C"), &entry);
  }
  EXPECT_EQ(&files.Intern("c:\\P\\MAIN.C"), &main);
  EXPECT_EQ(main.name, "C:\\p\\main.c");
  EXPECT_EQ(files.size(), 5002U);
  files.Clear();
  EXPECT_EQ(files.size(), 0U);
  EXPECT_EQ(files.Intern("MAIN.C").name, "MAIN.C");
}

TEST(FileTable, BaseNamesBeginAfterTheLastSeparator) {
  const auto baseName = [](std::string name, const CodePage& codePage) {
    return std::string(StkFileEntry{.name = std::move(name)}.BaseName(codePage));
  };
  const CodePage utf8 = CodePage::Utf8();
  EXPECT_EQ(baseName("main.c", utf8), "main.c");
  EXPECT_EQ(baseName("C:\\p/q\\main.c", utf8), "main.c");
  EXPECT_EQ(baseName("C:main.c", utf8), "main.c");
  EXPECT_EQ(baseName("/p\\q/main.c", utf8), "main.c");
  EXPECT_EQ(baseName("p\\", utf8), "");
  EXPECT_EQ(baseName("", utf8), "");
  const std::string doubleByte = "C:\\p\\\x83\\a.c";  // one character ends in the separator's byte
  EXPECT_EQ(baseName(doubleByte, CodePage::ShiftJis()), "\x83\\a.c");
  EXPECT_EQ(baseName(doubleByte, CodePage::Latin1()), "a.c");
}

}  // namespace
}  // namespace velkor
