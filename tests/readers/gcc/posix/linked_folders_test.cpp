#include <filesystem>
#include <gtest/gtest.h>

#include "platform/host_file_system.h"
#include "platform/temporary_folder.h"
#include "readers/gcc/folder_search.h"

namespace velkor {
namespace {

namespace fs = std::filesystem;

// On the host: the same whatever order files were made in, each folder once, links followed.
TEST(FolderSearch, FollowsLinksOfTheHost) {
  const testing::TemporaryFolder folder;
  const CodePage codePage = CodePage::Utf8();
  const HostPaths paths{codePage};
  HostFileSystem files{paths};
  const std::string build = folder / "build";
  for (const char* name : {"z/f.ci", "a/f.ci", "a-b/f.ci", "m.ci", "outside/n.ci"}) {
    folder.Put(name == std::string_view("outside/n.ci") ? name : std::string("build/") + name, "");
  }
  fs::create_directory_symlink(build, build + "/a/circle");
  fs::create_directory_symlink("z", build + "/first");  // has its own name
  fs::create_directory_symlink(folder / "outside", build + "/there");
  fs::create_symlink("nothing", build + "/gone.ci");
  fs::create_symlink("m.ci", build + "/n.ci");
  fs::create_directory(build + "/named.ci");
  using Texts = std::vector<std::string>;
  const Texts expected = {build + "/a-b/f.ci", build + "/a/f.ci", build + "/gone.ci",
                          build + "/m.ci",     build + "/n.ci",   build + "/there/n.ci",
                          build + "/z/f.ci"};
  const FolderContents found = SearchFolder(files, build, {});
  EXPECT_EQ(found.callGraphs, expected);
  EXPECT_TRUE(found.unreadable.empty());
  EXPECT_EQ(SearchFolder(files, build + "/m.ci", {}).unreadable, Texts{build + "/m.ci"});
  EXPECT_TRUE(SearchFolder(files, build + "/named.ci", {}).unreadable.empty());
}

}  // namespace
}  // namespace velkor
