#include "core/string_list.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "core/detail/call_name_lists.h"
#include "core/file_table.h"
#include "core/name_table.h"

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
  for (const char* name : {"main.c", "C:\\p/q\\main.c", "C:main.c", "/p\\q/main.c"}) {
    EXPECT_EQ(baseName(name, utf8), "main.c");
  }
  EXPECT_EQ(baseName("p\\", utf8), "");
  EXPECT_EQ(baseName("", utf8), "");
  const std::string doubleByte = "C:\\p\\\x83\\a.c";  // one character ends in the separator's byte
  EXPECT_EQ(baseName(doubleByte, CodePage::ShiftJis()), "\x83\\a.c");
  EXPECT_EQ(baseName(doubleByte, CodePage::Latin1()), "a.c");
}

TEST(NameTable, KeepsEachTextOnceAndWhereItIs) {
  NameTable names;
  EXPECT_EQ(names.Find("_f0"), NameTable::kNone);
  const std::string large(100000, 'x');
  const uint32_t first = names.Intern("_f0");
  const char* place = names[first].data();
  EXPECT_EQ(names.Intern(large), 1u);
  EXPECT_EQ(names.Intern(""), 2u);
  for (uint32_t i = 0; i < 20000; ++i) {
    const std::string text = "_f" + std::to_string(i);
    const uint32_t name = names.Intern(text);
    ASSERT_EQ(names.Intern(text), name);
    ASSERT_EQ(names.Find(text), name);
    ASSERT_EQ(names[name], text);
  }
  EXPECT_EQ(names[first].data(), place);
  EXPECT_EQ(names[1], large);
  EXPECT_EQ(names.Find("_F0"), NameTable::kNone);
  names.Clear();
  EXPECT_EQ(names.Find("_f0"), NameTable::kNone);
  EXPECT_EQ(names.Intern("_g"), 0u);
}

// Names that come function by function as well as by turns.
TEST(CallNameLists, HoldNoDuplicatesInWhateverOrderNamesCome) {
  CallNameLists lists;
  const std::pair<uint32_t, uint32_t> added[] = {{0, 1}, {0, 2}, {0, 1}, {1, 1}, {0, 3}, {0, 2},
                                                 {1, 1}, {3, 9}, {1, 4}, {0, 1}, {3, 9}, {1, 1}};
  for (const auto& [function, name] : added) {
    lists.Add(function, name);
  }
  const std::vector<uint32_t> expected[] = {{1, 2, 3}, {1, 4}, {}, {9}};
  for (uint32_t function = 0; function < 4; ++function) {
    const auto names = lists.Of(function);
    EXPECT_EQ(std::vector<uint32_t>(names.begin(), names.end()), expected[function]);
  }
  lists.Clear();
  EXPECT_TRUE(lists.Of(0).empty());
}

// More than are looked through one by one; 2 comes again and again to both.
TEST(CallNameLists, HoldNoDuplicatesOfManyNames) {
  CallNameLists lists;
  for (const uint32_t first : {0U, 40U}) {
    for (uint32_t i = first; i < first + 40; ++i) {
      for (const uint32_t function : {0U, 1U}) {
        lists.Add(function, i);
        lists.Add(function, i / 2);
        lists.Add(function, 2);
      }
    }
  }
  for (const uint32_t function : {0U, 1U}) {
    const auto names = lists.Of(function);
    EXPECT_EQ(names.size(), 80U);
    EXPECT_EQ(std::set<uint32_t>(names.begin(), names.end()).size(), 80U);
  }
}

}  // namespace
}  // namespace velkor
