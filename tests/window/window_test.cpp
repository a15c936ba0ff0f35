#include <filesystem>
#include <gtest/gtest.h>

#include "desktop.h"
#include "end-to-end/program.h"

namespace velkor {
namespace {

using testing::Desktop;
using testing::Program;
using testing::ReadFile;
using testing::WriteFile;

constexpr std::chrono::seconds kPatience(120);
constexpr std::chrono::seconds kOneTry(6);
constexpr std::chrono::seconds kClosing(20);

const std::string kEmptyTitle = "Untitled - velkor";
const std::string kMainTitle = "app.prj - velkor";
const std::string kBoxTitle = "velkor";

constexpr testing::Area kTreeArea{5, 100, 170, 500};
constexpr testing::Area kListArea{215, 110, 780, 250};

// The program with the Lua project, on a desktop of its own.
class Window : public ::testing::Test {
 protected:
  Window() {
    std::filesystem::copy(VELKOR_SOURCE_DIR "/examples/lua", scratch_.Root());
    velkor_ = std::make_unique<testing::ChildProcess>(
        std::vector<std::string>{VELKOR_WINDOW_PROGRAM}, desktop_.Variables(), Path("window.log"));
  }

  std::string Path(const std::string& name) const { return scratch_.Path(name); }
  std::string System() const { return ReadFile(Path("app.psg")); }

  bool AwaitTitle(const std::string& title) {
    return desktop_.Await([&] { return desktop_.ActiveTitle() == title; });
  }

  // Presses the keys until another window than the main one is active: a command is not there
  // yet while a job runs. Answers that window's title.
  std::string OpenBy(const std::vector<std::string>& keys) {
    const std::string main = desktop_.ActiveTitle();
    std::string title;
    while (desktop_.IsPatient()) {
      desktop_.Press(keys);
      if (desktop_.AwaitFor(kOneTry, [&] {
            title = desktop_.ActiveTitle();
            return !title.empty() && title != main;
          })) {
        return title;
      }
      desktop_.Press({"Escape", "Escape"});
    }
    return "";
  }

  // Enters the name of a file in the dialog that the keys open.
  void GiveFile(const std::vector<std::string>& keys, const std::string& name) {
    ASSERT_NE("", OpenBy(keys));
    desktop_.Type(Path(name));
    desktop_.Press({"Return"});
  }

  // Type-ahead in the call tree; the list follows with the function in its first row.
  bool Select(const std::string& start) {
    const std::string before = desktop_.SteadyPicture(kListArea);
    desktop_.Type(start);
    const bool changed = desktop_.Await([&] { return desktop_.Picture(kListArea) != before; });
    desktop_.SteadyPicture(kListArea);
    return changed;
  }

  void OpenProject() {
    ASSERT_TRUE(AwaitTitle(kEmptyTitle)) << ReadFile(Path("window.log"));
    desktop_.MoveActiveWindow(0, 0);
    const std::string empty = desktop_.SteadyPicture(kTreeArea);
    GiveFile({"ctrl+o"}, "app.prj");
    ASSERT_TRUE(AwaitTitle(kMainTitle));
    ASSERT_TRUE(desktop_.Await([&] { return desktop_.Picture(kTreeArea) != empty; }));
    desktop_.SteadyPicture(kTreeArea);
  }

  void SelectExpandAndSort() {
    const std::string unselected = desktop_.SteadyPicture(kListArea);
    desktop_.Click(100, 140);
    EXPECT_TRUE(desktop_.Await([&] { return desktop_.Picture(kListArea) != unselected; }));
    ASSERT_TRUE(Select("lua.c#pm"));
    const std::string collapsed = desktop_.SteadyPicture(kTreeArea);
    desktop_.Press({"Right"});
    EXPECT_TRUE(desktop_.Await([&] { return desktop_.Picture(kTreeArea) != collapsed; }));
    const std::string unsorted = desktop_.SteadyPicture(kListArea);
    desktop_.Press({"alt+v", "l", "s"});
    EXPECT_TRUE(desktop_.Await([&] { return desktop_.SteadyPicture(kListArea) != unsorted; }));
  }

  void AdjustSelected() {
    const std::string before = desktop_.SteadyPicture(kListArea);
    ASSERT_EQ("Adjust Stack Size", OpenBy({"alt+o", "s"}));
    desktop_.Type("100");
    desktop_.Press({"Return"});
    ASSERT_TRUE(AwaitTitle(kMainTitle));
    EXPECT_TRUE(desktop_.Await([&] { return !System().empty(); }));
    EXPECT_EQ("lua.c#pmain, ADD=100\r\n", System());
    EXPECT_NE(before, desktop_.SteadyPicture(kListArea));
  }

  // The window's report of the selected function and the command line's are the same file.
  void SaveLikeCommandLine(const std::string& item, const std::string& function,
                           const std::string& name) {
    std::vector<std::string> command = {"chains", Path("app.prj"), function, "--output",
                                        Path("cli-" + name)};
    if (item == "s") {
      command.push_back("--all");
    }
    ASSERT_EQ(0, Program(command).Run().status);
    const std::string expected = ReadFile(Path("cli-" + name));
    ASSERT_NE("", expected);
    GiveFile({"alt+f", item}, name);
    ASSERT_TRUE(AwaitTitle(kMainTitle));
    desktop_.AwaitFor(kClosing, [&] { return ReadFile(Path(name)) == expected; });
    EXPECT_EQ(expected, ReadFile(Path(name)));
  }

  void LoadSpecificationWithErrors() {
    WriteFile(Path("spec.txt"), "luaL_unref, ADD=5\nnobody, ADD=1\nluaL_loadstring, ADD=x\n");
    GiveFile({"alt+f", "n"}, "spec.txt");
    ASSERT_TRUE(AwaitTitle(kBoxTitle));
    desktop_.Press({"alt+i"});
    ASSERT_TRUE(AwaitTitle(kMainTitle));
    const auto isLoaded = [this] {
      return System().find("luaL_unref, ADD=5\r\n") != std::string::npos;
    };
    EXPECT_TRUE(desktop_.AwaitFor(kClosing, isLoaded)) << System();
    EXPECT_EQ(std::string::npos, System().find("nobody")) << System();
    EXPECT_EQ(std::string::npos, System().find("luaL_loadstring")) << System();
  }

  void ResetAll() {
    ASSERT_EQ(kBoxTitle, OpenBy({"alt+o", "a"}));
    desktop_.Press({"alt+y"});
    ASSERT_TRUE(AwaitTitle(kMainTitle));
    desktop_.AwaitFor(kClosing, [this] { return System().empty(); });
    EXPECT_EQ("", System());
  }

  void Exit() {
    desktop_.Press({"alt+f", "e"});
    EXPECT_EQ(0, velkor_->WaitFor(kClosing).value_or(-1)) << ReadFile(Path("window.log"));
  }

  const testing::ScratchFolder scratch_;
  Desktop desktop_{kPatience};
  std::unique_ptr<testing::ChildProcess> velkor_;
};

TEST_F(Window, IsWorkedWithKeysAndMouseLikeTheCommandLine) {
  ASSERT_NO_FATAL_FAILURE(OpenProject());
  ASSERT_NO_FATAL_FAILURE(SelectExpandAndSort());
  ASSERT_NO_FATAL_FAILURE(AdjustSelected());
  ASSERT_NO_FATAL_FAILURE(SaveLikeCommandLine("m", "lua.c#pmain", "max.txt"));
  ASSERT_TRUE(Select("lua_isu"));
  ASSERT_NO_FATAL_FAILURE(SaveLikeCommandLine("s", "lua_isuserdata", "all.csv"));
  ASSERT_NO_FATAL_FAILURE(LoadSpecificationWithErrors());
  ASSERT_NO_FATAL_FAILURE(ResetAll());
  Exit();
}

}  // namespace
}  // namespace velkor
