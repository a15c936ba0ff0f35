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

class Load : public ::testing::Test {
 protected:
  Load() {
    folder_.Put(
        "main.asm",
        ModuleText("main.c", {{"main", "4", {"f", "g"}}, {"f", "6", {}}, {"g", "8", {""}}}));
    project_ = folder_.Put("app.prj", ProjectText(".", {"main.c"}));
  }

  ProgramRun Csv(std::vector<std::string> more) const {
    std::vector<std::string> arguments = {"analyze", project_, "--format", "csv"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return Program(arguments).Run();
  }

  ScratchFolder folder_;
  std::string project_;
};

TEST_F(Load, FilesApplyInTheirOrderAndChangeNothingOnDisk) {
  const std::string first = folder_.Put("first.txt", "g, ADD=100\nmain, ADD=1\n");
  const std::string second = folder_.Put("second.txt", "main, ADD=2\ng, CALL=f, ADD=0\n");
  const ProgramRun run = Csv({"--load", first, "--load", second});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out,
            "name,total,frame,adjustment,file,top-level,complete\n"
            "main,20,4,2,main.c,yes,yes\n"
            "f,6,6,,main.c,no,yes\n"
            "g,14,8,0,main.c,no,yes\n");
  EXPECT_EQ(testing::ReadFile(folder_.Path("app.psg")), "");
  // A line without callees leaves those that were stated before.
  EXPECT_NE(Csv({"--load", second, "--load", first}).out.find("main,119,4,1,"), std::string::npos);
}

TEST_F(Load, AWrongLineIsAnsweredAsTheCommandLineSays) {
  const std::string wrong = folder_.Put("wrong.txt", "f, ADD=10\nnone, ADD=1\nf;\nmain, ADD=3\n");
  const std::string unknown =
      "W9410 Unknown function name (none) in file (" + wrong +
      ":line 2). Only functions explicitly referred to in the project are allowed.";
  for (const std::string answer : {"ignore", "retry", ""}) {
    const ProgramRun run =
        answer.empty() ? Csv({"--load", wrong}) : Csv({"--load", wrong, "--on-error", answer});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.Says(unknown)) << run.err;
    EXPECT_TRUE(run.Says(wrong + " Reading completed."));
    EXPECT_NE(run.out.find("main,23,4,3,"), std::string::npos) << run.out;
  }
  const ProgramRun run = Csv({"--load", wrong, "--on-error", "abort"});
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(run.Says(unknown));
  EXPECT_TRUE(run.Says(wrong + " Reading aborted."));
  EXPECT_NE(run.out.find("main,12,4,,"), std::string::npos) << run.out;
}

}  // namespace
}  // namespace velkor
