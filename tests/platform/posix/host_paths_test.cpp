#include "platform/host_paths.h"

#include <filesystem>
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

std::string Exact(const HostPaths& paths, std::string_view path) {
  return paths.ToHost(path, Spelling::kExact).Bytes();
}

std::string OfProject(const HostPaths& paths, std::string_view path) {
  return paths.ToHost(path, Spelling::kOfProject).Bytes();
}

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
  const TemporaryFolder folder;
  EXPECT_EQ(paths.FullPathName("a\\..\\b/c.asm"), folder / "b/c.asm");
  EXPECT_EQ(paths.FullPathName("."), folder.Path());
  // The result is shorter than 300 bytes.
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
    EXPECT_EQ(Exact(paths, one.path), one.expected) << one.path;
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
    EXPECT_EQ(Exact(paths, one.path), one.expected) << one.path;
  }
  paths.SetProject("\\\\srv\\share\\fw", "fw.prj");
  EXPECT_EQ(Exact(paths, "\\\\SRV\\share\\fw\\m.asm"), "./m.asm");
  EXPECT_EQ(Exact(paths, "\\\\srv\\else\\m.asm"), "srv/else/m.asm");
  paths.SetProject("\\fw\\prj", folder / "fw.prj");
  EXPECT_EQ(Exact(paths, "\\FW\\prj\\..\\m.asm"), folder / "../m.asm");
  EXPECT_EQ(Exact(paths, "C:\\fw\\prj\\m.asm"), "C:/fw/prj/m.asm");
  paths.SetProject("/home/me/fw", "/home/me/fw/fw.prj");
  EXPECT_EQ(Exact(paths, "C:\\m.asm"), "C:/m.asm");
}

TEST(ToHostTest, SpellingsOfAProjectAreFoundIgnoringCase) {
  const TemporaryFolder folder;
  for (const char* name : {"Src/Main.ASM", "Src/main.Asm", "Src/One.asm", "SRC2/x", "src2/x"}) {
    folder.Put(name, "");
  }
  const CodePage page = CodePage::Utf8();
  HostPaths paths(page);
  paths.AddMapping("C:=" + folder.Path());
  const Case cases[] = {
      {"C:\\SRC\\ONE.asm", folder / "Src/One.asm"},
      {"C:\\src\\main.Asm", folder / "Src/main.Asm"},  // as spelt, where there
      {"C:\\src\\MAIN.asm", folder / "Src/MAIN.asm"},  // none of several
      {"sRC2/x", "sRC2/x"},
      {"src2\\X", "src2/x"},
      {folder / "src\\ONE.ASM", folder / "Src/One.asm"},
      {"C:\\src\\new\\X.psg", folder / "Src/new/X.psg"},  // where it would be created
      {"C:\\src\\", folder / "Src/"},
      {std::string("C:\\src\0", 7), folder / std::string("src\0", 4)},
  };
  for (const Case& one : cases) {
    EXPECT_EQ(OfProject(paths, one.path), one.expected) << one.path;
  }
  EXPECT_EQ(Exact(paths, "C:\\src\\one.asm"), folder / "src/one.asm");
  // What a folder holds is asked once for a project.
  folder.Put("Src/Late.asm", "");
  EXPECT_EQ(OfProject(paths, "C:\\src\\LATE.asm"), folder / "Src/LATE.asm");
  paths.SetProject(folder.Path(), folder / "app.prj");
  EXPECT_EQ(OfProject(paths, "C:\\src\\LATE.asm"), folder / "Src/Late.asm");
}

// A folder named in two sets, and files in it that an archive has left in the bytes of the other.
TEST(ToHostTest, NamesAreThoseOfTheHostBeforeTheBytesOfTheProject) {
  const TemporaryFolder folder;
  const CodePage page = CodePage::ShiftJis();
  const auto find = [&page](const char* path) { return OfProject(HostPaths(page), path); };
  folder.Put("\xE8\xA1\xA8/ab.asm", "");
  EXPECT_EQ(find("\x95\x5C\\AB.asm"), "\xE8\xA1\xA8/ab.asm");
  folder.Put("\x95\x5C/ab.asm", "");
  EXPECT_EQ(find("\x95\x5C/ab.asm"), "\xE8\xA1\xA8/ab.asm");
  folder.Put("\xE8\xA1\xA8/\x95\x5C.ASM", "");
  EXPECT_EQ(find("\x95\x5C\\\x95\x5C.asm"), "\xE8\xA1\xA8/\x95\x5C.ASM");
  EXPECT_EQ(Exact(HostPaths(page), "\x95\x5C\\\x95\x5C.ASM"), "\xE8\xA1\xA8/\xE8\xA1\xA8.ASM");
}

// Whatever a path is made of, its text leads back to it, and nothing in it separates or hides.
TEST(GivenPathTest, EveryHostPathHasATextThatLeadsBackToIt) {
  const std::string names[] = {"\xE6\x97\xA5\xE6\x9C\xAC\xE8\xA1\xA8",  // a "\" in 932
                               "caf\xC3\xA9",
                               "\xC2\xA5\xE2\x82\xAC\xF0\x9F\x98\x80",
                               "\x95\x5C\xFF",
                               "odd\\name",
                               "\x1A"
                               "5C\x1A",
                               "C:x=;"};
  const CodePage pages[] = {CodePage::Utf8(), CodePage::ShiftJis(), CodePage::Latin1()};
  for (const CodePage& host : {CodePage::Utf8(), CodePage::ShiftJis()}) {
    for (const CodePage& page : pages) {
      const HostPaths paths(page, host);
      for (const std::string& name : names) {
        const std::string path = "/" + name + "/x." + name;
        const std::string text = paths.GivenPath(path);
        EXPECT_EQ(Exact(paths, text), path) << page.Name();
        EXPECT_EQ(PathText::Split(text, page).components.size(), 2u) << page.Name() << text;
        EXPECT_EQ(paths.FullPathName(text), text);
      }
    }
  }
  const CodePage page = CodePage::ShiftJis();
  const HostPaths paths(page);
  EXPECT_EQ(paths.GivenPath("/\xE8\xA1\xA8/../\xE8\xA1\xA8"), "/\x95\x5C");
  EXPECT_EQ(Exact(paths, "/\x1A\x37\x41"), "/\x1A\x37\x41");  // no path is told so
  EXPECT_EQ(page.ToUtf8(paths.GivenPath("/caf\xC3\xA9\\\xFF")), "/caf\xC3\xA9\\\xEF\xBF\xBD");
}

TEST(GivenPathTest, WhatIsTypedIsConvertedFirst) {
  const TemporaryFolder folder;
  const std::string inner = folder / "\xE8\xA1\xA8\\in";
  std::filesystem::create_directories(inner);
  const CodePage page = CodePage::ShiftJis();
  HostPaths paths(page);
  EXPECT_TRUE(paths.AddMapping("C:\\\xE8\xA1\xA8=/\xE8\xA1\xA8"));
  EXPECT_EQ(Exact(paths, "C:\\\x95\x5C\\x"), "/\xE8\xA1\xA8/x");
  EXPECT_EQ(paths.GivenPath("C:\\\xE8\xA1\xA8\\..\\x"), "C:\\x");
  EXPECT_EQ(paths.GivenPath("a\\..\\b"), folder / "b");
  EXPECT_EQ(paths.GivenPath(""), "");
  std::filesystem::current_path(inner);
  EXPECT_EQ(paths.GivenPath("x"), folder /
                                      "\x95\x5C\x1A"
                                      "5Cin/x");
  EXPECT_EQ(Exact(paths, paths.GivenPath("../x")), folder / "x");
}

}  // namespace
}  // namespace velkor
