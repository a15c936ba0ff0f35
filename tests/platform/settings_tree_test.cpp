#include "platform/settings_tree.h"

#include <gtest/gtest.h>

namespace velkor {
namespace {

const CodePage kUtf8 = CodePage::Utf8();

constexpr std::string_view kFile =
    "\xEF\xBB\xBF; settings\r\n"
    "lost=before any key\n"
    "[Software\\Company\\B]\n"
    "Name = \"two words\" \n"
    "name=second\n"
    "Empty=\n"
    "no value\n"
    "[software\\company\\A\\Deep\\]\r"
    "Name=deep\r"
    "[broken\n"
    "Stray=still of Deep\n"
    "[SOFTWARE\\COMPANY\\B]\n"
    "More=merged\n";

std::string Read(const SettingsTree& tree, std::string_view path, std::string_view name) {
  const auto key = tree.Open(path);
  return key ? tree.Value(*key, name, 520).value_or("(no value)") : "(no key)";
}

TEST(SettingsTree, FindsKeysAndValuesWhateverTheirLetterCase) {
  const SettingsTree tree(kUtf8, kFile);
  EXPECT_EQ(Read(tree, "Software\\Company\\B", "Name"), "two words");
  EXPECT_EQ(Read(tree, "SOFTWARE\\company\\b\\", "EMPTY"), "");
  EXPECT_EQ(Read(tree, "Software\\Company\\B", "More"), "merged");
  EXPECT_EQ(Read(tree, "Software\\Company\\B", "no value"), "(no value)");
  EXPECT_EQ(Read(tree, "Software\\Company\\A\\Deep", "Stray"), "still of Deep");
  EXPECT_EQ(Read(tree, "Software\\Company\\A", "Name"), "(no value)") << "exists by its subkey";
  EXPECT_EQ(Read(tree, "Software\\Company\\C", "Name"), "(no key)");
  EXPECT_EQ(Read(tree, "Company\\B", "Name"), "(no key)");
  EXPECT_EQ(Read(tree, "", "lost"), "(no value)");
  // Subkeys in the order of the file, and no value in part.
  EXPECT_EQ(tree.Subkeys(*tree.Open("Software\\Company")), (std::vector<std::string>{"B", "A"}));
  EXPECT_TRUE(SettingsTree(kUtf8).Subkeys(0).empty());
  EXPECT_TRUE(tree.Value(*tree.Open("Software\\Company\\B"), "More", 7));
  EXPECT_FALSE(tree.Value(*tree.Open("Software\\Company\\B"), "More", 6));
}

// The second bytes of these two are the separator and the bracket.
TEST(SettingsTree, StepsOverCharactersOfTwoBytes) {
  const CodePage shiftJis = CodePage::ShiftJis();
  const SettingsTree tree(shiftJis, "[\x83\x5C\x83\x5D\\x]\nv=1\n");
  EXPECT_EQ(Read(tree, "\x83\x5C\x83\x5D\\X", "v"), "1");
  EXPECT_FALSE(tree.Open("\x83"));
}

TEST(SettingsTree, LooksAtTheBeginningOfAHugeFileOnly) {
  std::string text;
  while (text.size() < 2 * SettingsTree::kMaxBytes) {
    text += "[a\\" + std::to_string(text.size()) + "]\n";
  }
  const SettingsTree tree(kUtf8, text);
  EXPECT_TRUE(tree.Open("a\\0"));
  EXPECT_LT(tree.Subkeys(*tree.Open("a")).size(), SettingsTree::kMaxBytes / 4);
}

}  // namespace
}  // namespace velkor
