#include <gtest/gtest.h>

#include "program.h"
#include "scratch_folder.h"

namespace velkor {
namespace {

using testing::ModuleText;
using testing::Program;
using testing::ProgramRun;
using testing::ProjectText;
using testing::ScratchFolder;

TEST(Paths, AProjectOfAnotherMachineOpensWhereItLies) {
  const ScratchFolder folder;
  folder.Put("Out/MAIN.ASM", ModuleText("C:\\work\\main.c", {{"main", "4", {}}}));
  const std::string project =
      folder.Put("app.prj", ProjectText("C:\\work", {"src\\main.c"}, "Outasmsrccmb0=out\n"));
  const ProgramRun run = Program({"analyze", project}).Run();
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_TRUE(run.Says("C:\\work\\out\\main.asm Reading completed.")) << run.err;
}

TEST(Paths, MappingsLeadDriveLettersToFolders) {
  const ScratchFolder folder;
  folder.Put("far/main.asm", ModuleText("D:\\far\\main.c", {{"main", "4", {}}}));
  folder.Put("wrong/main.asm", "");
  const std::string project = folder.Put("near/app.prj", ProjectText("D:\\far", {"main.c"}));
  const std::string right = "d:\\FAR=" + folder.Path("far");
  const std::string wrong = "D:\\far=" + folder.Path("wrong");

  const ProgramRun byOption =
      Program({"analyze", project, "--map", wrong, "--map", right}).With("VELKOR_MAP", wrong).Run();
  EXPECT_EQ(byOption.status, 0) << byOption.err;
  EXPECT_TRUE(byOption.Says("D:\\far\\main.asm Reading completed.")) << byOption.err;
  const ProgramRun byEnvironment =
      Program({"analyze", project}).With("VELKOR_MAP", "E:\\x=/x;" + right).Run();
  EXPECT_EQ(byEnvironment.status, 0) << byEnvironment.err;
  EXPECT_EQ(Program({"analyze", project}).Run().status, 1);
}

TEST(Paths, TextsOfCodePage932ReachTheReaderAsUtf8) {
  const ScratchFolder folder;
  // In this set the second byte of a character can be "\": it separates nothing.
  const std::string name = "\x83\x5C";
  folder.Put("main.asm", ModuleText("C:\\" + name + "\\main.c",
                                    {{"main", "4", {name, "x"}}, {name, "6", {}, true}}));
  const std::string project = folder.Put("app.prj", ProjectText("C:\\" + name, {"main.c"}));
  const ProgramRun run =
      Program({"analyze", project, "--codepage", "932", "--format", "csv"}).Run();
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out,
            "name,total,frame,adjustment,file,top-level,complete\n"
            "main,10,4,,C:\\ソ\\main.c,yes,no\n"
            "main.c#ソ,6,6,,C:\\ソ\\main.c,no,yes\n"
            "[x],?,?,,,no,no\n");
  EXPECT_TRUE(run.Says("C:\\ソ\\main.asm Reading completed.")) << run.err;

  // This set has no "≥".
  const ProgramRun text = Program({"analyze", project, "--codepage", "932"}).Run();
  EXPECT_NE(text.out.find(">=10"), std::string::npos) << text.out;
  EXPECT_EQ(text.out.find("≥"), std::string::npos) << text.out;
}

TEST(Paths, TheTableFilesAreBesideTheProgramOrWhereTheOptionSays) {
  const ScratchFolder folder;
  folder.Put("main.asm", ModuleText("main.c", {{"main", "4", {"memcpy"}}}));
  const std::string project = folder.Put("app.prj", ProjectText(".", {"main.c"}, "Librarychk=1\n"));
  const ProgramRun beside = Program({"analyze", project, "--format", "csv"}).Run();
  EXPECT_EQ(beside.status, 0) << beside.err;
  EXPECT_NE(beside.out.find("main,8,"), std::string::npos) << beside.out;

  folder.Put("data/lt.txt", "[memcpy], ADD=40\n");
  folder.Put("data/ltr.txt", "");
  const ProgramRun own =
      Program({"analyze", project, "--format", "csv", "--data", "data"}).In(folder.Root()).Run();
  EXPECT_EQ(own.status, 0) << own.err;
  EXPECT_NE(own.out.find("main,44,"), std::string::npos) << own.out;

  const ProgramRun none = Program({"analyze", project, "--data", folder.Path("none")}).Run();
  EXPECT_EQ(none.status, 1);
  EXPECT_NE(none.err.find("W9427 "), std::string::npos) << none.err;
}

}  // namespace
}  // namespace velkor
