#include "files/paths.h"

#include <gtest/gtest.h>

#include "support/test_host.h"

namespace velkor {
namespace {

// Examples only: the path fuzzer checks the parts of any text.
TEST(Paths, PartsOfAName) {
  const CodePage page = CodePage::ShiftJis();
  const std::string so = "\x83\x5C";  // its second byte is a backslash elsewhere
  const std::string path = "C:\\" + so + "\\" + so + ".b.c";
  EXPECT_EQ("C:\\" + so + "\\", DirectoryPart(path, page));
  EXPECT_EQ(so + ".b", BaseName(path, page));
  EXPECT_EQ(".c", Extension(path, page));
  EXPECT_EQ("", Extension(".profile", page));
  EXPECT_EQ("C:\\p.q\\a", ReplaceExtension("C:\\p.q\\a.prj", "", page));
  EXPECT_EQ(so + "\\x", Join(so, "x", page));
  EXPECT_EQ("\x83\\", DirectoryPart(so + "x", CodePage::Latin1()));
}

TEST(Paths, ResolvingAgainstAFolder) {
  testing::TestHost host;
  EXPECT_EQ("C:\\p\\q\\m.c", FullPath("..\\q\\m.c", "C:\\p\\prj", host.host));
  EXPECT_EQ("/p/q/m.c", FullPath("..\\q\\m.c", "/p/prj", host.host));
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
