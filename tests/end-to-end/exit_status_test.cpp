#include <filesystem>
#include <gtest/gtest.h>
#include <signal.h>

#include "program.h"
#include "scratch_folder.h"

namespace velkor {
namespace {

using testing::ModuleText;
using testing::Program;
using testing::ProgramRun;
using testing::ProjectText;
using testing::ScratchFolder;

// A project whose one function cannot be read wrongly.
std::string PutSmallProject(const ScratchFolder& folder) {
  folder.Put("main.asm", ModuleText("main.c", {{"main", "4", {}}}));
  return folder.Put("app.prj", ProjectText(".", {"main.c"}));
}

TEST(ExitStatus, WrongUsageIsTwoAndSaysWhy) {
  const ScratchFolder folder;
  const std::string project = PutSmallProject(folder);
  const std::vector<std::vector<std::string>> wrong = {
      {},
      {"analyse", project},
      {"explain"},
      {"analyze", project, "another"},
      {"analyze", project, "--format", "xml"},
      {"analyze", project, "--on-error", "stop"},
      {"analyze", project, "--load"},
      {"analyze", project, "--map", "C:\\work"},
      {"analyze", project, "--codepage", "klingon\x1B[2J"},
      {"analyze", project, "--format\x1B[2J"},
      {"analyze", project, "--format", "\x1B[2J"},
      {"analyze", project, "--no-such-option"}};
  for (const auto& arguments : wrong) {
    const ProgramRun run = Program(arguments).Run();
    EXPECT_EQ(run.status, 2) << ::testing::PrintToString(arguments);
    EXPECT_NE(run.err, "") << ::testing::PrintToString(arguments);
    EXPECT_EQ(run.out, "") << ::testing::PrintToString(arguments);
    EXPECT_EQ(run.err.find('\x1B'), std::string::npos) << run.err;
  }
  EXPECT_EQ(Program({"analyze", project}).With("VELKOR_MAP", "C:\\a=/b;nonsense").Run().status, 2);
  EXPECT_EQ(Program({"--help"}).Run().status, 0);
  EXPECT_TRUE(Program({"--version"}).Run().out.starts_with("velkor "));
}

TEST(ExitStatus, AProjectThatCannotBeReadIsThreeAndIsSaidOnce) {
  const ScratchFolder folder;
  std::filesystem::create_directory(folder.Path("folder.prj"));
  const std::string empty = folder.Put("empty.prj", "");
  const std::string longName = "/" + std::string(255, 'x');
  const std::vector<std::pair<std::string, std::string>> failures = {
      {folder.Path("none.prj"),
       "E9300 Cannot find project file (" + folder.Path("none.prj") + ")."},
      {folder.Path("folder.prj"),
       "E9301 Project file read error (" + folder.Path("folder.prj") + ")."},
      {empty, "E9302 Illegal format in project file (" + empty + "). Check the file."},
      {longName, "W9407 Too long file name (" + longName + "). The limit is 255."}};
  for (const auto& [project, message] : failures) {
    const ProgramRun run = Program({"analyze", project, "--format", "json"}).Run();
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(run.err, message + "\n");
    EXPECT_EQ(run.out, "");
  }
}

TEST(ExitStatus, AModuleThatIsNotWholeIsOneAndIsNamedInEveryOutput) {
  const ScratchFolder folder;
  const std::string cut = ModuleText("uart.c", {{"isr", "6", {}}, {"tail", "8", {}}});
  const std::string uart = folder.Put("uart.asm", cut.substr(0, cut.size() - 1));
  const std::string two = ModuleText("two.c", {{"main", "9", {}}});
  folder.Put("two.asm", two);
  PutSmallProject(folder);
  const std::string project =
      folder.Put("app.prj", ProjectText(".", {"main.c", "uart.c", "two.c", "boot.asm"}));
  const ProgramRun text = Program({"analyze", project}).Run();
  EXPECT_EQ(text.status, 1);
  EXPECT_NE(text.out.find("\nModules    2 of 3 read; uart.asm not whole\n"), std::string::npos)
      << text.out;
  const ProgramRun json = Program({"analyze", project, "--format", "json"}).Run();
  EXPECT_EQ(json.status, 1);
  EXPECT_NE(json.out.find("\"missing\": [],\n  \"notWhole\": [\"" + uart + "\"]"),
            std::string::npos)
      << json.out;
  EXPECT_NE(json.out.find("\"warnings\": []"), std::string::npos) << json.out;
  for (const std::vector<std::string>& command :
       {std::vector<std::string>{"analyze", project, "--format", "csv"},
        {"explain", project, "isr"},
        {"chains", project, "isr", "--output", folder.Path("chains.txt")}}) {
    const ProgramRun run = Program(command).Run();
    EXPECT_EQ(run.status, 1);
    for (const std::string& note :
         {folder.Path("app.prj") +
              ":7: Source4=boot.asm is no C source: what it defines is not known. "
              "[source-left-out]",
          uart + ":11: The module is not whole: it ends in the middle of a line. "
                 "[module-not-whole]",
          std::string("two.c: main is defined twice: with a frame of 4 bytes in main.c, and of 9 "
                      "bytes in two.c. Calls from other files are taken to mean the first. "
                      "[duplicate-definition]")}) {
      EXPECT_TRUE(run.Says("note: " + note)) << run.err;
    }
    EXPECT_TRUE(run.Says(uart + " Reading completed.")) << run.err;
  }
  // What is no C source is noted and no more.
  folder.Put("app.prj", ProjectText(".", {"main.c", "boot.asm"}));
  EXPECT_EQ(Program({"analyze", project}).Run().status, 0);
}

TEST(ExitStatus, OutputThatCannotBeWrittenIsFour) {
  const ScratchFolder folder;
  const std::string project = PutSmallProject(folder);
  for (const std::string format : {"text", "json", "csv"}) {
    const std::vector<std::string> arguments = {"analyze", project, "--format", format};
    for (const ProgramRun& run : {Program(arguments).OutputTo("/dev/full").Run(),
                                  Program(arguments).OutputClosed().Run()}) {
      EXPECT_EQ(run.status, 4) << run.err;
      EXPECT_NE(run.err.find("velkor-cli: cannot write to standard output: "), std::string::npos)
          << run.err;
    }
    // A reader that has seen enough closes the pipe, and all is well.
    const ProgramRun unread = Program(arguments).OutputToBrokenPipe().Run();
    EXPECT_EQ(unread.status, 0) << unread.err;
    EXPECT_EQ(unread.err, Program(arguments).Run().err);
  }
}

TEST(ExitStatus, AnInterruptStopsTheJobAndPrintsNoResult) {
  const ScratchFolder folder;
  const std::string project = testing::PutLongProject(folder);
  for (const int signalNumber : {SIGINT, SIGTERM}) {
    const ProgramRun run =
        Program({"analyze", project}).SignalOn("m1.asm Reading...", signalNumber).Run();
    EXPECT_EQ(run.status, 130);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err.find("m1999.asm"), std::string::npos);
    EXPECT_TRUE(run.err.ends_with(" Reading aborted.\n")) << run.err;
  }
}

}  // namespace
}  // namespace velkor
