#include "platform/host_paths.h"

#include <gtest/gtest.h>
#include <string>

#include "platform/temporary_folder.h"

namespace velkor {
namespace {

using testing::TemporaryFolder;

struct Case {
  std::string path;
  std::string expected;
};

TEST(FullPathNameTest, StepsSeparatorsAndRoots) {
  const CodePage page = CodePage::Utf8();
  const HostPaths paths(page);
  const Case cases[] = {
      {"C:\\p\\prj\\..\\q\\m.c", "C:\\p\\q\\m.c"},
      {"C:/p//q\\.\\m.c", "C:\\p\\q\\m.c"},
      {"c:rel\\x", "c:\\rel\\x"},
      {"C:", "C:\\"},
      {"C:\\..\\..\\x", "C:\\x"},
      {"C:\\p\\..", "C:\\"},
      {"C:\\p\\q\\", "C:\\p\\q\\"},
      {"C:\\p\\...\\.x", "C:\\p\\...\\.x"},
      {"\\dir/x", "\\dir\\x"},
      {"\\\\server\\share\\x\\..\\..\\..\\y", "\\\\server\\share\\y"},
      {"\\\\server\\share", "\\\\server\\share"},
      {"/home/me\\..//you/./x", "/home/you/x"},
      {"/../..", "/"},
      {"//a", "/a"},
  };
  for (const Case& one : cases) {
    EXPECT_EQ(paths.FullPathName(one.path), one.expected) << one.path;
  }
  EXPECT_EQ(paths.FullPathName(""), std::nullopt);
}

TEST(FullPathNameTest, RelativePathsLieBelowTheCurrentFolder) {
  const TemporaryFolder folder;
  const CodePage page = CodePage::Utf8();
  const HostPaths paths(page);
  EXPECT_EQ(paths.FullPathName("a\\..\\b/c.asm"), folder / "b/c.asm");
  EXPECT_EQ(paths.FullPathName("."), folder.Path());
}

TEST(FullPathNameTest, TheResultIsShorterThan300Bytes) {
  const CodePage page = CodePage::Utf8();
  const HostPaths paths(page);
  const std::string fits = "C:\\" + std::string(296, 'x');
  EXPECT_EQ(paths.FullPathName(fits), fits);
  EXPECT_EQ(paths.FullPathName(fits + 'x'), std::nullopt);
  EXPECT_EQ(paths.FullPathName("C:\\" + std::string(400, '\\') + "a\\..\\b"), "C:\\b");
}

TEST(ToHostTest, MappingsReplaceWholeComponents) {
  const TemporaryFolder folder;
  const CodePage page = CodePage::Utf8();
  HostPaths paths(page);
  EXPECT_TRUE(paths.AddMapping("C:\\proj=/none/old"));
  EXPECT_TRUE(
      paths.AddMappings("c:/proj/=/none/proj;C:\\Proj\\Lib=/none/lib;;D:=/none/d;"
                        "\\\\srv\\share=/none/srv"));
  for (const char* wrong : {"", "=", "C:\\x", "=/none", "C:\\x="}) {
    EXPECT_FALSE(paths.AddMapping(wrong)) << wrong;
  }
  EXPECT_FALSE(paths.AddMappings("E:=/none/e;wrong;F:=/none/f"));
  EXPECT_TRUE(paths.AddMappings(""));
  const Case cases[] = {
      {"C:\\PROJ\\a\\b.c", "/none/proj/a/b.c"},  // of equal ones the last
      {"c:/proj/lib\\x", "/none/lib/x"},         // the longest
      {"C:\\proj", "/none/proj"},
      {"C:\\projs\\x", "C:/projs/x"},
      {"C:\\proj\\..\\x", "C:/x"},
      {"D:x", "/none/d/x"},
      {"E:\\x", "/none/e/x"},
      {"F:\\x", "F:/x"},
      {"\\\\SRV\\share\\..\\x", "/none/srv/x"},
      {"\\\\srv\\other\\x", "srv/other/x"},
      {"/C:/proj", "/C:/proj"},
      {"", ""},
  };
  for (const Case& one : cases) {
    EXPECT_EQ(paths.ToHost(one.path), one.expected) << one.path;
  }
}

TEST(ToHostTest, TheProjectDirectoryStandsForTheFolderOfTheProjectFile) {
  const TemporaryFolder folder;
  const CodePage page = CodePage::Utf8();
  HostPaths paths(page);
  paths.AddMapping("C:\\tools=/none/tools");
  paths.SetProject("C:\\Dev\\fw\\prj", folder / "fw.prj");
  const Case cases[] = {
      {"c:\\dev\\FW\\PRJ\\out\\m.asm", folder / "out/m.asm"},
      {"C:\\dev\\fw\\lib\\x.asm", folder / "../lib/x.asm"},
      {"C:\\other\\x.asm", folder / "../../../other/x.asm"},
      {"\\dev\\fw\\x.asm", folder / "../x.asm"},
      {"C:\\dev\\fw\\prj", folder.Path() + '/'},
      {"C:\\tools\\x", "/none/tools/x"},
      {"D:\\x", "D:/x"},
      {"out\\m.asm", "out/m.asm"},
  };
  for (const Case& one : cases) {
    EXPECT_EQ(paths.ToHost(one.path), one.expected) << one.path;
  }
  paths.SetProject("\\\\srv\\share\\fw", "fw.prj");
  EXPECT_EQ(paths.ToHost("\\\\SRV\\share\\fw\\m.asm"), "./m.asm");
  EXPECT_EQ(paths.ToHost("\\\\srv\\else\\m.asm"), "srv/else/m.asm");
  paths.SetProject("/home/me/fw", "/home/me/fw/fw.prj");
  EXPECT_EQ(paths.ToHost("C:\\m.asm"), "C:/m.asm");
}

TEST(ToHostTest, MissingSpellingsAreFoundIgnoringCase) {
  const TemporaryFolder folder;
  folder.Put("Src/Main.ASM", "");
  folder.Put("Src/main.Asm", "");
  folder.Put("SRC2/x", "");
  folder.Put("src2/x", "");
  folder.Put("odd\\name", "");
  folder.Put("\xE8\xA1\xA8.asm", "");
  const CodePage page = CodePage::Utf8();
  HostPaths paths(page);
  paths.AddMapping("C:=" + folder.Path());
  const Case cases[] = {
      {"C:\\SRC\\MAIN.asm", folder / "Src/Main.ASM"},  // of several the first in byte order
      {"C:\\src\\main.Asm", folder / "Src/main.Asm"},  // as spelt, where there
      {"src2\\X", "src2/x"},
      {"sRC2/x", "SRC2/x"},
      {folder / "src\\MAIN.ASM", folder / "Src/Main.ASM"},
      {folder / "odd\\name", folder / "odd\\name"},
      {"C:\\src\\new\\X.psg", folder / "Src/new/X.psg"},  // where it would be created
      {"C:\\src\\", folder / "Src/"},
      {std::string("C:\\src\0", 7), folder / std::string("src\0", 4)},
  };
  for (const Case& one : cases) {
    EXPECT_EQ(paths.ToHost(one.path), one.expected) << one.path;
  }
  const CodePage shiftJis = CodePage::ShiftJis();
  EXPECT_EQ(HostPaths(shiftJis).ToHost("\x95\x5C.ASM"), "\xE8\xA1\xA8.asm");
}

}  // namespace
}  // namespace velkor
