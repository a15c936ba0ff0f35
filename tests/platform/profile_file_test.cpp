#include "platform/profile_file.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <gtest/gtest.h>

namespace velkor {
namespace {

using namespace std::string_literals;

TEST(ProfileFileTest, ReadsValuesWhateverTheirDress) {
  const CodePage page = CodePage::Utf8();
  const ProfileFile file(page,
                         "\xEF\xBB\xBF[ProjectManager]\r\n"
                         "  Path = C:\\p\\prj \t\r\n"
                         ";Path=no\n"
                         "Quoted=\" a = b \"\r"
                         "Single='x'\n"
                         "Half=\"x\n"
                         "no sign\n"
                         "[unclosed\n"
                         "Nul=a\0b\x1A"
                         "c\n"
                         "Empty=\n"
                         "=nameless\n"
                         "\n"
                         " [ Options.CC 0 a[1].c ] \n"
                         "Last=end"s);
  EXPECT_EQ(file.GetString("PROJECTMANAGER", "path"), "C:\\p\\prj");
  EXPECT_EQ(file.GetString("ProjectManager", "Quoted"), " a = b ");
  EXPECT_EQ(file.GetString("ProjectManager", "Single"), "x");
  EXPECT_EQ(file.GetString("ProjectManager", "Half"), "\"x");
  EXPECT_EQ(file.GetString("ProjectManager", "Nul"),
            "a\0b\x1A"
            "c"s);
  EXPECT_EQ(file.GetString("ProjectManager", "Empty"), "");
  EXPECT_EQ(file.GetString("ProjectManager", "no sign"), "");
  EXPECT_EQ(file.GetString("options.cc 0 A[1].C", "Last"), "end");
  EXPECT_EQ(file.GetString("ProjectManager", "Last"), "");
  EXPECT_EQ(file.GetString("Project", "Path"), "");
}

TEST(ProfileFileTest, TheFirstOfEqualNamesWins) {
  const CodePage page = CodePage::Utf8();
  const ProfileFile file(page,
                         "early=0\n[B]\nk=b\n[A]\nk=1\nK=2\n[Empty]\n[a]\nk=3\nother=4\n"
                         "[EMPTY]\nk=5\n[\xC3\x84]\n\xC3\xB6=6\n");
  EXPECT_EQ(file.GetString("a", "K"), "1");
  EXPECT_EQ(file.GetString("A", "other"), "");
  EXPECT_EQ(file.GetString("Empty", "k"), "");
  EXPECT_EQ(file.GetString("", "early"), "");
  EXPECT_EQ(file.GetString("\xC3\xA4", "\xC3\x96"), "6");
}

TEST(ProfileFileTest, ABracketInsideADoubleByteCharacterEndsNoName) {
  const CodePage page = CodePage::ShiftJis();
  const ProfileFile file(page, "[x \x83\x5D]\nk=\x95\x5C\x95\x5C\n[y\x83\x5D\nk=no\n");
  EXPECT_EQ(file.GetString("X \x83\x5D", "K"), "\x95\x5C\x95\x5C");
  EXPECT_EQ(file.GetString("x \x83\x5D", "k", 4), "\x95\x5C");  // three bytes would cut one
  EXPECT_EQ(file.GetString("y\x83", "k"), "");
  EXPECT_EQ(file.GetString("x \x83\x5D", "k", 1), "");
  EXPECT_EQ(file.GetString("x \x83\x5D", "k", 0), "");
}

// A file that never ends, in pieces of odd sizes.
class Endless : public InputFile {
 public:
  size_t Read(char* buffer, size_t size) override {
    const size_t count = std::min<size_t>(size, 4093);
    std::memset(buffer, 'x', count);
    read += count;
    return count;
  }
  uint64_t Length() const override { return 1; }

  uint64_t read = 0;
};

TEST(ProfileFileTest, HugeFilesCostBoundedTimeAndMemory) {
  const CodePage page = CodePage::Utf8();
  Endless endless;
  const ProfileFile unbounded(page, endless);
  EXPECT_LE(endless.read, ProfileFile::kMaxBytes);

  // Long equal names are what comparing costs most on.
  const std::string name(size_t{1} << 20, 'n');
  std::string text;
  for (int i = 0; i < 8; ++i) {
    text += '[' + name + "]\n";
    for (int key = 0; key < 20000; ++key) {
      text += 'k' + std::to_string(key) + "=v" + std::to_string(i) + '\n';
    }
  }
  const auto start = std::chrono::steady_clock::now();
  const ProfileFile file(page, std::move(text));
  EXPECT_EQ(file.GetString(name, "K19999"), "v0");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

}  // namespace
}  // namespace velkor
