#include "platform/host_paths.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

#include "platform/temporary_folder.h"

namespace velkor {
namespace {

using testing::TemporaryFolder;

std::string Exact(const HostPaths& paths, std::string_view path) {
  return paths.ToHost(path, Spelling::kExact).Bytes();
}

TEST(GivenPathTest, EveryPathGetsItsDriveAndLeadsToItself) {
  const TemporaryFolder folder;
  const std::string drive = folder.Path().substr(0, 2);
  for (const CodePage& page : {CodePage::Utf8(), CodePage::ShiftJis(), CodePage::Latin1()}) {
    const HostPaths paths(page);
    EXPECT_EQ(paths.GivenPath("a/..\\b"), folder.Path() + "\\b");
    EXPECT_EQ(paths.GivenPath("/x/y"), drive + "\\x\\y");
    EXPECT_EQ(paths.GivenPath("\\x"), drive + "\\x");
    EXPECT_EQ(paths.GivenPath("//server/share/x/../y"), "\\\\server\\share\\y");
    EXPECT_EQ(paths.GivenPath("q:/x\\y"), "q:\\x\\y");
    EXPECT_EQ(paths.GivenPath(""), "");
    for (const char* name :
         {"C:\\caf\xC3\xA9", "C:\\\xE8\xA1\xA8\\x", "C:\\\xF0\x9F\x98\x80", "C:\\\xED\xA0\x80.c",
          "\\\\server\\share\\x"}) {
      EXPECT_EQ(Exact(paths, paths.GivenPath(name)), name) << page.Name();
    }
  }
}

TEST(ToHostTest, TheFolderOfTheProjectFileStandsForADirectoryThatIsNotHere) {
  const TemporaryFolder folder;
  folder.Put("here/lib/x.asm", "");
  const CodePage page = CodePage::Utf8();
  HostPaths paths(page);
  paths.AddMapping("C:\\tools=D:\\none\\tools");
  const std::string drive = folder.Path().substr(0, 2);
  paths.SetProject(drive + "\\velkor none\\fw\\prj", folder.Path() + "\\here\\fw.prj");
  const std::string here = folder.Path() + "\\here\\";
  EXPECT_EQ(Exact(paths, drive + "\\Velkor None\\FW\\prj\\out\\m.asm"), here + "out\\m.asm");
  EXPECT_EQ(Exact(paths, drive + "\\velkor none\\fw\\x.asm"), here + "..\\x.asm");
  EXPECT_EQ(Exact(paths, "C:\\Tools\\x"), "D:\\none\\tools\\x");
  EXPECT_EQ(Exact(paths, "Q:\\x"), "Q:\\x");
  // What is given, or stands beside the program, has nothing to do with the project.
  EXPECT_EQ(Exact(paths, here + "new"), here + "new");
  EXPECT_EQ(Exact(paths, drive + "\\new"), drive + "\\new");

  paths.SetProject(folder.Path() + "\\here\\lib", "Q:\\other\\fw.prj");
  EXPECT_EQ(Exact(paths, here + "lib\\x.asm"), here + "lib\\x.asm");
  EXPECT_EQ(Exact(paths, here + "lib\\none\\y.asm"), here + "lib\\none\\y.asm");
}

}  // namespace
}  // namespace velkor
