#include "files/paths.h"

#include <gtest/gtest.h>

#include "support/test_host.h"

namespace velkor {
namespace {

// A double-byte character of 932 whose second byte is a backslash.
const std::string kSo = "\x83\x5C";

TEST(Paths, PartsOfAName) {
  struct Case {
    std::string path;
    std::string directory;
    std::string base;
    std::string extension;
    bool absolute;
  };
  const Case cases[] = {
      {"", "", "", "", false},
      {"a.b.c", "", "a.b", ".c", false},
      {".profile", "", ".profile", "", false},
      {"..", "", ".", ".", false},
      {"name.", "", "name", ".", false},
      {"C:x", "C:", "x", "", true},
      {"C:\\p.q\\name", "C:\\p.q\\", "name", "", true},
      {"C:\\p\\.c", "C:\\p\\", ".c", "", true},
      {"/x", "/", "x", "", true},
      {"\\x\\y.asm", "\\x\\", "y", ".asm", true},
      {"x\\y", "x\\", "y", "", false},
      {"C:/dir/", "C:/dir/", "", "", true},
      {"ab:c.d", "ab:", "c", ".d", false},
      {kSo + ".c", "", kSo, ".c", false},
      {kSo + ":x", kSo + ":", "x", "", true},
      {"C:\\" + kSo + "\\" + kSo, "C:\\" + kSo + "\\", kSo, "", true},
  };
  const CodePage page = CodePage::ShiftJis();
  for (const Case& c : cases) {
    EXPECT_EQ(c.directory, DirectoryPart(c.path, page)) << c.path;
    EXPECT_EQ(c.base + c.extension, FileNamePart(c.path, page)) << c.path;
    EXPECT_EQ(c.base, BaseName(c.path, page)) << c.path;
    EXPECT_EQ(c.extension, Extension(c.path, page)) << c.path;
    EXPECT_EQ(c.absolute, IsAbsolute(c.path, page)) << c.path;
  }
  // In a single-byte set the same byte does separate.
  EXPECT_EQ("\x83\\", DirectoryPart(kSo + "x", CodePage::Latin1()));
}

TEST(Paths, JoiningAndReplacing) {
  const CodePage page = CodePage::ShiftJis();
  EXPECT_EQ("C:\\dir\\x", Join("C:\\dir\\", "x", page));
  EXPECT_EQ("C:\\dir\\x", Join("C:\\dir", "x", page));
  EXPECT_EQ("C:/dir/\\x", Join("C:/dir/", "x", page));
  EXPECT_EQ("x", Join("", "x", page));
  EXPECT_EQ(kSo + "\\x", Join(kSo, "x", page));
  EXPECT_EQ("a.psg", ReplaceExtension("a.prj", ".psg", page));
  EXPECT_EQ("C:\\p\\a.psg", ReplaceExtension("C:\\p\\a.prj", ".psg", page));
  EXPECT_EQ("C:\\p.q\\a", ReplaceExtension("C:\\p.q\\a.prj", "", page));
}

TEST(Paths, ResolvingAgainstAFolder) {
  testing::TestHost host;
  EXPECT_EQ("C:\\p\\q\\m.c", FullPath("..\\q\\m.c", "C:\\p\\prj", host.host));
  EXPECT_EQ("/p/q/m.c", FullPath("..\\q\\m.c", "/p/prj", host.host));
  EXPECT_EQ("C:\\p\\prj\\m.c", AbsoluteAgainst("m.c", "C:\\p\\prj", host.host));
  EXPECT_EQ("D:..\\m.c", AbsoluteAgainst("D:..\\m.c", "C:\\p\\prj", host.host));
  // Too long to be resolved: the joined text stands.
  const std::string longName(291, 'n');
  EXPECT_EQ("C:\\p\\prj\\.\\" + longName, FullPath(".\\" + longName, "C:\\p\\prj", host.host));

  const std::string program = host.paths.ExecutablePath();
  EXPECT_EQ(host.paths.FullPathName(program.substr(0, program.rfind('/')) + "/../dattarn/lt.txt"),
            ProgramDataPath("..\\dattarn\\lt.txt", host.host));
}

}  // namespace
}  // namespace velkor
