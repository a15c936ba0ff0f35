#include "files/paths.h"

#include <gtest/gtest.h>

#include "support/test_host.h"

namespace velkor {
namespace {

// The parts of any name are checked by the path fuzzer.
TEST(Paths, ResolvingAgainstAFolder) {
  testing::TestHost host;
  EXPECT_EQ("C:\\p\\q\\m.c", FullPath("..\\q\\m.c", "C:\\p\\prj", host.host));
  EXPECT_EQ("/p/q/m.c", FullPath("..\\q\\m.c", "/p/prj", host.host));
  EXPECT_EQ("D:..\\m.c", AbsoluteAgainst("D:..\\m.c", "C:\\p\\prj", host.host));
  // Too long to be resolved: the joined text stands.
  const std::string longName(291, 'n');
  EXPECT_EQ("C:\\p\\prj\\.\\" + longName, FullPath(".\\" + longName, "C:\\p\\prj", host.host));

  const std::string program = host.paths.ExecutablePath();
  EXPECT_EQ(host.paths.FullPathName(program + "/../../dattarn/lt.txt"),
            InstalledPath("lt.txt", host.host));
  const std::string shared = ProgramDataPath("../share/velkor", host.host);
  host.files.AddDirectory(shared);
  EXPECT_EQ(host.paths.FullPathName(shared + "/lt.txt"), InstalledPath("lt.txt", host.host));
}

}  // namespace
}  // namespace velkor
