#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "program.h"
#include "scratch_folder.h"

namespace velkor {
namespace {

using testing::ModuleText;
using testing::Program;
using testing::ProgramRun;
using testing::ProjectText;
using testing::ScratchFolder;

// main calls ring, which calls itself, and step of a.c; a second step is in b.c.
class ChangeCommands : public ::testing::Test {
 protected:
  ChangeCommands() {
    folder_.Put("a.asm", ModuleText("a.c", {{"main", "4", {"ring", "step", "memcpy", ""}},
                                            {"ring", "10", {"ring"}},
                                            {"step", "6", {}, true}}));
    folder_.Put("b.asm", ModuleText("b.c", {{"isr", "8", {"step"}}, {"step", "2", {}, true}}));
    project_ = folder_.Put("app.prj", ProjectText(".", {"a.c", "b.c"}, "Librarychk=1\n"));
  }

  ProgramRun Run(const std::string& command, const std::vector<std::string>& more) const {
    return Program({command, project_}, more).Run();
  }
  std::string Saved() const { return testing::ReadFile(folder_.Path("app.psg")); }
  bool HasSaved() const { return std::filesystem::exists(folder_.Path("app.psg")); }

  ScratchFolder folder_;
  std::string project_;
};

TEST_F(ChangeCommands, AdjustStatesWhatItIsGivenAndKeepsTheRest) {
  EXPECT_EQ(Run("adjust", {"ring", "--margin", "0x10", "--depth", "3"}).status, 0);
  EXPECT_EQ(Saved(), "ring, ADD=16, RECTIME=3\r\n");
  EXPECT_EQ(Run("adjust", {"ring", "--margin", ""}).status, 0);
  EXPECT_EQ(Saved(), "ring, RECTIME=3\r\n");

  const ProgramRun callees =
      Run("adjust", {"main", "--callee", "isr", "--callee", "b.c#step", "--margin", "5"});
  EXPECT_EQ(callees.status, 0) << callees.err;
  EXPECT_TRUE(
      callees.Says("Stack size specification of main adjusted. Additional margin is set to "
                   "5, isr is added., b.c#step is added.."))
      << callees.err;
  EXPECT_EQ(Saved(), "main, ADD=5, CALL=isr, CALL=b.c#step\r\nring, RECTIME=3\r\n");
  EXPECT_EQ(Run("adjust", {"main", "--callee", "isr"}).status, 0) << "states the whole list";
  EXPECT_EQ(Saved(), "main, ADD=5, CALL=isr\r\nring, RECTIME=3\r\n");
  EXPECT_EQ(Run("adjust", {"main", "--no-callees"}).status, 0);
  EXPECT_EQ(Run("adjust", {"ring", "--depth", ""}).status, 0) << "nothing left is a cancellation";
  EXPECT_EQ(Saved(), "main, ADD=5\r\n");

  // A library function opens with its size in the margin: left as it is, it states nothing.
  EXPECT_EQ(Run("adjust", {"[memcpy]", "--margin", "4"}).status, 0);
  EXPECT_EQ(Saved(), "main, ADD=5\r\n");
  EXPECT_EQ(Run("adjust", {"[memcpy]", "--margin", "4", "--callee", "isr"}).status, 0);
  EXPECT_EQ(Saved(), "main, ADD=5\r\n[memcpy], ADD=4, CALL=isr\r\n");
  const ProgramRun replaced = Run("adjust", {"[memcpy]", "--margin", "3"});
  EXPECT_EQ(replaced.status, 0);
  EXPECT_TRUE(
      replaced.Says("note: The margin of 3 bytes replaces the library size of function "
                    "([memcpy]), 4 bytes. [margin-replaces-size]"))
      << replaced.err;
}

// A second b.c stands in another folder.
TEST_F(ChangeCommands, NamesThatOnlyTheFurtherFormTellsApart) {
  folder_.Put("c.asm", ModuleText("x\\b.c", {{"other", "8", {"step"}}, {"step", "3", {}, true}}));
  folder_.Put("app.prj", ProjectText(".", {"a.c", "b.c", "c.c"}));
  const ProgramRun both = Run("adjust", {"b.c#step", "--margin", "1"});
  EXPECT_EQ(both.status, 2) << both.err;
  EXPECT_TRUE(both.err.find("x\\b.c#step") != std::string::npos) << both.err;
  EXPECT_EQ(Run("adjust", {"x\\b.c#step", "--margin", "9", "--callee", "\"b.c\"#step"}).status, 0);
  EXPECT_EQ(Saved(), "x\\b.c#step, ADD=9, CALL=\"b.c\"#step\r\n");
  EXPECT_EQ(Run("adjust", {"x\\b.c#step", "--margin", "8"}).status, 0);
  EXPECT_EQ(Saved(), "x\\b.c#step, ADD=8, CALL=\"b.c\"#step\r\n");

  folder_.Put("app.psg", "ring, RECTIME=2, CALL=gone\r\n");
  EXPECT_EQ(Run("reset", {"main"}).status, 0);
  EXPECT_EQ(Saved(), "ring, RECTIME=2, CALL=gone\r\n") << "nothing is written";
  EXPECT_EQ(Run("reset", {"ring"}).status, 0);
  EXPECT_EQ(Saved(), "");
}

TEST_F(ChangeCommands, WhatADialogWouldRefuseChangesNothing) {
  const std::vector<std::pair<std::vector<std::string>, std::string>> refused = {
      {{"main", "--margin", "12a"}, "W9462 Illegal value (a) for additional margin."},
      {{"ring", "--depth", "0"}, "W9463 Illegal value (0) for recursion depth."},
      {{"ring", "--depth", std::string(400, '9')},
       "W9464 Too big additional margin. The limit is 65535."},
      {{"main", "--depth", "2"}, "velkor-cli: main is not recursive: it has no recursion depth."},
      {{"main", "--callee", "ring"},
       "velkor-cli: main calls ring directly: it cannot be stated once more."},
      {{"main", "--callee", "mian"},
       "velkor-cli: \"mian\" is no function of the project; near it: main."},
      {{"rnig", "--margin", "1"},
       "velkor-cli: \"rnig\" is no function of the project; near it: ring."},
      {{"step", "--margin", "1"},
       "velkor-cli: \"step\" can mean more than one function: a.c#step of a.c, b.c#step of b.c."}};
  for (const auto& [arguments, message] : refused) {
    const ProgramRun run = Run("adjust", arguments);
    EXPECT_EQ(run.status, 2) << message;
    EXPECT_TRUE(run.Says(message)) << run.err;
  }
  EXPECT_FALSE(HasSaved());
}

TEST_F(ChangeCommands, ACalleeCanMakeAFunctionRecursive) {
  EXPECT_EQ(Run("adjust", {"isr", "--callee", "isr", "--depth", "4"}).status, 0);
  EXPECT_EQ(Saved(), "isr, RECTIME=4, CALL=isr\r\n");
}

TEST_F(ChangeCommands, ATotalOverTheLimitIsSaid) {
  const ProgramRun run = Run("adjust", {"ring", "--depth", "10000"});
  EXPECT_EQ(run.status, 0) << "all was read";
  EXPECT_TRUE(
      run.Says("W9465 Total stack size exceeds 65535 in function (ring). Reduce recursion "
               "depth."))
      << run.err;
  EXPECT_EQ(Saved(), "ring, RECTIME=10000\r\n");
}

TEST_F(ChangeCommands, ResetTakesOneOrAllAway) {
  EXPECT_EQ(Run("reset", {"main"}).status, 0);
  EXPECT_EQ(Run("reset", {"--all"}).status, 0);
  EXPECT_FALSE(HasSaved()) << "where nothing is adjusted nothing is written";
  folder_.Put("app.psg", "main, ADD=1\na.c#step, ADD=2\nring, ADD=3\n");
  const ProgramRun one = Run("reset", {"a.c#step"});
  EXPECT_EQ(one.status, 0);
  EXPECT_TRUE(one.Says("Stack size specification of a.c#step canceled.")) << one.err;
  EXPECT_EQ(Saved(), "main, ADD=1\r\nring, ADD=3\r\n");
  EXPECT_EQ(Run("reset", {"--all"}).status, 0);
  EXPECT_EQ(Saved(), "");
  EXPECT_EQ(Run("reset", {}).status, 2);
  EXPECT_EQ(Run("reset", {"main", "--all"}).status, 2);
}

TEST_F(ChangeCommands, LoadSavesWhatItHasRead) {
  const std::string limits = folder_.Put("limits.txt", "ring, RECTIME=2\nmain, CALL=isr\n");
  EXPECT_EQ(Run("load", {limits}).status, 0);
  EXPECT_EQ(Saved(), "main, CALL=isr\r\nring, RECTIME=2\r\n");
  const std::string wrong = folder_.Put("wrong.txt", "isr, ADD=1\nnone, ADD=1\n");
  EXPECT_EQ(Run("load", {wrong, "--on-error", "abort"}).status, 1);
  EXPECT_EQ(Saved(), "main, CALL=isr\r\nring, RECTIME=2\r\n");
  EXPECT_EQ(Run("load", {wrong}).status, 1);
  EXPECT_EQ(Saved(), "main, CALL=isr\r\nring, RECTIME=2\r\nisr, ADD=1\r\n");
}

TEST_F(ChangeCommands, SaveWritesAdjustmentsAndUnknownFunctions) {
  folder_.Put("b.asm", ModuleText("b.c", {{"isr", "8", {"driver"}}}));
  folder_.Put("app.psg", "ring, RECTIME=2\n");
  const std::string target = folder_.Path("saved.txt");
  const ProgramRun run = Run("save", {"--output", target});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_TRUE(run.Says(target + " Writing completed.")) << run.err;
  EXPECT_EQ(testing::ReadFile(target), "ring, RECTIME=2\r\n[driver]\r\n");
  EXPECT_EQ(Saved(), "ring, RECTIME=2\n") << "the project is as before";

  std::filesystem::create_hard_link(folder_.Path("a.asm"), folder_.Path("link.asm"));
  ASSERT_EQ(mkfifo(folder_.Path("pipe").c_str(), 0600), 0);
  const std::string before = testing::ReadFile(folder_.Path("a.asm"));
  for (const std::string& wrong : std::vector<std::string>{
           folder_.Root(), folder_.Path("none/saved.txt"), project_, folder_.Path("a.asm"),
           folder_.Path("link.asm"), folder_.Path("app.psg"), std::string("/dev/full"),
           folder_.Path(std::string(255, 'x')), folder_.Path("pipe")}) {
    EXPECT_EQ(Run("save", {"--output", wrong}).status, 4) << wrong;
    EXPECT_EQ(Run("chains", {"main", "--output", wrong}).status, 4) << wrong;
  }
  EXPECT_EQ(Run("chains", {"mainn", "--output", folder_.Path("new.txt")}).status, 2);
  EXPECT_FALSE(std::filesystem::exists(folder_.Path("new.txt")));
  EXPECT_EQ(testing::ReadFile(folder_.Path("a.asm")), before);
  EXPECT_EQ(Saved(), "ring, RECTIME=2\n");
}

}  // namespace
}  // namespace velkor
