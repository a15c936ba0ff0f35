#include <filesystem>
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

// Twelve interrupts of one size, one larger one, and main, of which not everything is known.
class Answer : public ::testing::Test {
 protected:
  Answer() {
    std::vector<testing::ModuleFunction> functions = {
        {"main", "8", {"step", "driver"}}, {"step", "6", {}}, {"large", "40", {"step"}}};
    for (int i = 0; i < 12; ++i) {
      functions.push_back(
          {"isr" + std::to_string(i), i % 2 == 0 ? "8" : "10",
           i % 2 == 0 ? std::vector<std::string>{"leaf"} : std::vector<std::string>{}});
    }
    functions.push_back({"leaf", "2", {}});
    folder_.Put("a.asm", ModuleText("a.c", functions));
    project_ = folder_.Put("app.prj", ProjectText(".", {"a.c"}));
  }

  ProgramRun Run(const std::vector<std::string>& more) const {
    return Program({"analyze", project_}, more).Run();
  }

  ScratchFolder folder_;
  std::string project_;
};

TEST_F(Answer, FunctionsThatShareANumberAreOneLine) {
  const ProgramRun all = Run({});
  EXPECT_EQ(all.status, 0) << all.err;
  EXPECT_NE(all.out.find("        46        46        40  large\n"
                         "       ≥14        14         8  main\n"
                         "        10        10      8-10  isr0, isr1, isr2, isr3 and 8 more\n\n"),
            std::string::npos)
      << all.out;
  EXPECT_NE(all.out.find("\nWhy large takes 46 bytes\n"), std::string::npos) << all.out;
  EXPECT_NE(all.out.find("         1                   1  [driver], ADD=\n"), std::string::npos)
      << all.out;
  const ProgramRun first = Run({"--top", "1"});
  EXPECT_NE(first.out.find("  large\n                                ... 13 more\n\nWhy large"),
            std::string::npos)
      << first.out;
}

TEST_F(Answer, OneFunctionStandsForTheLargest) {
  const ProgramRun main = Run({"--function", "main"});
  EXPECT_NE(main.out.find("\nWhy main takes at least 14 bytes\n"), std::string::npos) << main.out;
  EXPECT_EQ(main.out.find("large"), std::string::npos) << main.out;
  EXPECT_NE(main.out.find("[driver], ADD=\n"), std::string::npos) << main.out;
  EXPECT_EQ(Run({"--function", "large"}).out.find("What to state"), std::string::npos);
  EXPECT_EQ(Run({"--function", "nothing"}).status, 2);
}

TEST_F(Answer, WhatChoosesTextGoesWithNothingElse) {
  for (const std::vector<std::string>& wrong :
       std::vector<std::vector<std::string>>{{"--top", "3", "--format", "csv"},
                                             {"--chains", "--format", "json"},
                                             {"--function", "main", "--format=csv"},
                                             {"--top", "3", "--chains"},
                                             {"--function", "main", "--full"},
                                             {"--top", "-1"},
                                             {"--top", "many"}}) {
    const ProgramRun run = Run(wrong);
    EXPECT_TRUE(run.status == 2 && run.err.size() < 200) << ::testing::PrintToString(wrong);
  }
}

// Each way to write gives the same bytes; what was there stays until the new file is whole.
TEST_F(Answer, GoesToAFileToo) {
  const std::string file = folder_.Put("out.txt", "before");
  for (const std::string format : {"text", "csv", "json"}) {
    const std::string printed = Run({"--format", format}).out;
    const ProgramRun written = Run({"--format", format, "--output", file});
    EXPECT_EQ(written.status, 0) << written.err;
    EXPECT_EQ(written.out, "");
    EXPECT_TRUE(written.Says(file + " Writing completed.")) << written.err;
    EXPECT_EQ(testing::ReadFile(file), printed);
    EXPECT_EQ(Run({"--format", format, "--output", "-"}).out, printed);
  }
  for (const std::string& wrong : {project_, folder_.Path("a.asm"), folder_.Path("none/out.txt"),
                                   folder_.Root(), std::string("/dev/full")}) {
    const ProgramRun run = Run({"--output", wrong});
    EXPECT_EQ(run.status, 4) << wrong;
    EXPECT_NE(run.err.find("W940"), std::string::npos) << run.err;
  }
}

}  // namespace
}  // namespace velkor
