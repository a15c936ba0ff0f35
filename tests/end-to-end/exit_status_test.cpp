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
      {"analyze"},
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
  EXPECT_EQ(Program({"--version"}).Run().out, "velkor 1.0.0\n");
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

TEST(ExitStatus, ARelativeProjectIsTheOneOfTheCurrentFolder) {
  const ScratchFolder folder;
  PutSmallProject(folder);
  const ProgramRun run = Program({"analyze", "./sub/../app.prj"}).In(folder.Root()).Run();
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find(folder.Path("app.prj") + "\n"), std::string::npos) << run.out;
  EXPECT_TRUE(run.Says(folder.Path("main.asm") + " Reading completed.")) << run.err;
}

TEST(ExitStatus, SomethingNotReadIsOneWithTheResultsOfTheRest) {
  const ScratchFolder folder;
  folder.Put("main.asm", ModuleText("main.c", {{"main", "4", {}}}));
  const std::string missing = folder.Put("missing.prj", ProjectText(".", {"main.c", "gone.c"}));
  const ProgramRun run = Program({"analyze", missing, "--format", "csv"}).Run();
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(run.Says("W9431 Cannot find CCTarn generated assembler source module file (" +
                       folder.Path("gone.asm") +
                       "). Check \"Compiler Options\" specified for the corresponding C source "
                       "file and rebuild."))
      << run.err;
  EXPECT_EQ(run.out,
            "name,total,frame,adjustment,file,top-level,complete,bound,state,known\n"
            "main,4,4,,main.c,yes,yes,4,bounded,4\n");
}

TEST(ExitStatus, OutputThatCannotBeWrittenIsFour) {
  const ScratchFolder folder;
  const std::string project = PutSmallProject(folder);
  for (const std::string format : {"text", "json", "csv"}) {
    const std::vector<std::string> arguments = {"analyze", project, "--format", format};
    for (const ProgramRun& run :
         {Program(arguments).OutputTo("/dev/full").Run(), Program(arguments).OutputClosed().Run(),
          Program(arguments).OutputToBrokenPipe().Run()}) {
      EXPECT_EQ(run.status, 4) << run.err;
      EXPECT_NE(run.err.find("velkor-cli: cannot write to standard output: "), std::string::npos)
          << run.err;
    }
  }
}

// Long enough for an interrupt to meet it: many names of one module of the greatest length.
std::string PutLongProject(const ScratchFolder& folder) {
  std::string text = ModuleText("main.c", {{"main", "4", {}}});
  for (int line = 0; line < 65000; ++line) {
    text += "; a line of the code information block that says nothing\n";
  }
  const std::string module = folder.Put("m0.asm", text);
  std::vector<std::string> sources = {"m0.c"};
  for (int i = 1; i < 2000; ++i) {
    std::filesystem::create_symlink(module, folder.Path("m" + std::to_string(i) + ".asm"));
    sources.push_back("m" + std::to_string(i) + ".c");
  }
  return folder.Put("app.prj", ProjectText(".", sources));
}

TEST(ExitStatus, AnInterruptStopsTheJobAndPrintsNoResult) {
  const ScratchFolder folder;
  const std::string project = PutLongProject(folder);
  for (const int signalNumber : {SIGINT, SIGTERM}) {
    const ProgramRun run =
        Program({"analyze", project}).SignalOn("m1.asm Reading...", signalNumber).Run();
    EXPECT_EQ(run.status, 130);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err.find("m1999.asm"), std::string::npos);
  }
}

}  // namespace
}  // namespace velkor
