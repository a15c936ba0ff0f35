#include "readers/gcc/folder_search.h"

#include <gtest/gtest.h>

#include "support/memory_files.h"

namespace velkor {
namespace {

using Paths = std::vector<std::string>;

std::vector<PathPattern> Patterns(const Paths& texts) {
  return {texts.begin(), texts.end()};
}

TEST(PathPattern, Matches) {
  struct Case {
    std::string_view pattern;
    std::string_view path;
    bool matches;
  };
  constexpr Case kCases[] = {
      {"tests/**", "tests/a/b.ci", true},
      {"tests/**", "tests", true},
      {"tests/**", "a/tests/b.ci", false},
      {"**/tests/**", "a/b/tests/c.ci", true},
      {"**/tests/**", "tests/c.ci", true},
      {"**/tests/**", "mytests/c.ci", false},
      {"tests", "tests/a.ci", false},
      {"./tests/", "tests", true},
      {"*.ci", "a.ci", true},
      {"*.ci", "d/a.ci", false},
      {"**/a*b*.ci", "d/e/aXbXb.ci", true},
      {"**/a*b*.ci", "d/aXc.ci", false},
      {"**", "", true},
      {"", "a", false},
      {"a/**/b/**/c", "a/b/b/x/c", true},
      {"a/**/b/**/c", "a/x/c", false},
      {"?.ci", "\xC3\xA4.ci", true},
      {"??.ci", "\xC3\xA4.ci", false},
      {"a[1].ci", "a[1].ci", true},
      {"a?c", "a/c", false},
  };
  for (const Case& one : kCases) {
    EXPECT_EQ(PathPattern(one.pattern).Matches(one.path), one.matches)
        << one.pattern << " " << one.path;
  }
  // No path is worth more than its length times that of the pattern.
  std::string stars;
  for (int i = 0; i < 200; ++i) {
    stars += "*a";
  }
  EXPECT_FALSE(PathPattern(stars + "b").Matches(std::string(20000, 'a')));
}

TEST(FolderSearch, LeavesOutWhatIsNoBuildOfTheUser) {
  testing::MemoryFileSystem files;
  for (const char* path :
       {"b/x.ci", "b/x.o", "b/x.c", "b/y.c.obj", "b/deep/er/z.ci", "b/a.ci.d", "b/.git/h.ci",
        "b/CMakeFiles/3.25.1/CompilerIdC/c.ci", "b/CMakeFiles/3.28.0-rc2/c.ci",
        "b/CMakeFiles/CMakeScratch/TryCompile-1/t.ci", "b/CMakeFiles/fw.dir/m.c.ci",
        "b/3.25.1/kept.ci", "b/tests/t.ci", "b/tests/more/u.o", "b/meson-private/c.ci",
        "bb/other.ci"}) {
    files.Put(path, "");
  }
  const FolderContents found = SearchFolder(files, "b", Patterns({"tests/**", "**/*.obj", "none"}));
  EXPECT_EQ(found.callGraphs,
            (Paths{"b/3.25.1/kept.ci", "b/CMakeFiles/fw.dir/m.c.ci", "b/deep/er/z.ci", "b/x.ci"}));
  EXPECT_EQ(found.objects, Paths{"b/x.o"});
  EXPECT_TRUE(found.unreadable.empty());
  EXPECT_EQ(found.isPatternUsed, (std::vector<bool>{true, true, false}));

  files.Refuse("b/deep/er");
  EXPECT_EQ(SearchFolder(files, "b", {}).unreadable, Paths{"b/deep/er"});
  EXPECT_EQ(SearchFolder(files, "c", {}).unreadable, Paths{"c"});
}

}  // namespace
}  // namespace velkor
