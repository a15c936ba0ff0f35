#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "program.h"
#include "scratch_folder.h"

namespace velkor {
namespace {

namespace fs = std::filesystem;

using testing::ModuleText;
using testing::Program;
using testing::ProgramRun;
using testing::ProjectText;
using testing::ReadFile;
using testing::ScratchFolder;

class SharedProject : public ::testing::Test {
 protected:
  SharedProject() {
    folder_.Put("main.asm", ModuleText("main.c", {{"main", "4", {"f"}}, {"f", "6", {}}}));
    project_ = folder_.Put("app.prj", ProjectText(".", {"main.c"}));
    systemFile_ = folder_.Path("app.psg");
  }
  Program Adjust(const std::string& function, int margin) const {
    return Program({"adjust", project_, function, "--margin", std::to_string(margin)});
  }
  // Of the stk system file and of all copies of earlier ones.
  std::string KeptLines() const {
    std::string lines;
    for (const auto& entry : fs::directory_iterator(folder_.Root())) {
      const std::string name = entry.path().filename().string();
      EXPECT_FALSE(name.ends_with(".tmp")) << name;
      if (name.starts_with("app.psg")) {
        lines += ReadFile(entry.path().string());
      }
    }
    return lines;
  }
  std::string NotWritable() const {
    return "W9402 Cannot open file to write (" + systemFile_ +
           "). Check that both the file and the folder are writable.";
  }
  std::string Broken() const {
    return "W9429 Broken stk system file (" + systemFile_ + "). The file was ignored.";
  }

  ScratchFolder folder_;
  std::string project_;
  std::string systemFile_;
};

std::string Line(const std::string& function, int margin) {
  return function + ", ADD=" + std::to_string(margin) + "\r\n";
}

// Every other round begins without a stk system file, the others go on with the last one's.
TEST_F(SharedProject, TwoAdjustmentsAtOnceAreNeverReportedAndLost) {
  for (int round = 1; round <= 40; ++round) {
    SCOPED_TRACE(round);
    if (round % 2 == 1) {
      fs::remove(systemFile_);
    }
    ProgramRun first;
    std::thread other([&] { first = Adjust("main", round).Run(); });
    const ProgramRun second = Adjust("f", round).Run();
    other.join();
    const std::string saved = ReadFile(systemFile_);
    const std::string kept = KeptLines();
    EXPECT_TRUE(saved.empty() || saved.ends_with("\r\n")) << saved;
    for (const auto& [run, function] :
         {std::pair<const ProgramRun*, const char*>(&first, "main"), {&second, "f"}}) {
      if (run->status == 4) {
        EXPECT_TRUE(run->Says(NotWritable())) << run->err;
      } else {
        EXPECT_TRUE(run->status == 0 || (run->status == 1 && run->Says(Broken()))) << run->err;
        EXPECT_NE(kept.find(Line(function, round)), std::string::npos)
            << kept << first.err << second.err;
      }
    }
    EXPECT_TRUE(first.status != 4 || second.status != 4) << "one of the two comes through";
  }
}

TEST_F(SharedProject, WhatAnotherHoldsIsLeftAlone) {
  const std::string old = Line("main", 1);
  folder_.Put("app.psg", old);
  const int held = open(systemFile_.c_str(), O_RDONLY);
  ASSERT_EQ(flock(held, LOCK_SH), 0);  // as one that reads
  const ProgramRun besideReader = Adjust("f", 5).Run();
  EXPECT_EQ(besideReader.status, 4);
  EXPECT_TRUE(besideReader.Says(NotWritable())) << besideReader.err;
  ASSERT_EQ(flock(held, LOCK_EX), 0);  // as one that writes
  const ProgramRun besideWriter = Adjust("f", 5).Run();
  EXPECT_EQ(besideWriter.status, 4);
  EXPECT_TRUE(besideWriter.Says(Broken())) << besideWriter.err;
  EXPECT_TRUE(besideWriter.Says(NotWritable())) << besideWriter.err;
  EXPECT_EQ(KeptLines(), old);
  close(held);
  EXPECT_EQ(Adjust("f", 5).Run().status, 0);
  EXPECT_EQ(ReadFile(systemFile_), old + Line("f", 5));
}

TEST_F(SharedProject, AReadOnlyFolderIsAnalysedAndNotWritten) {
  fs::permissions(folder_.Root(), fs::perms(0555));
  const ProgramRun analysed =
      Program({"analyze", project_, "--format", "csv"}).WithoutRights().Run();
  if (analysed.status == 127) {
    GTEST_SKIP() << "this program cannot be started without rights";
  }
  EXPECT_EQ(analysed.status, 0) << analysed.err;
  EXPECT_NE(analysed.out.find("main,10,4,"), std::string::npos) << analysed.out;
  const ProgramRun adjusted = Adjust("f", 5).WithoutRights().Run();
  EXPECT_EQ(adjusted.status, 4);
  EXPECT_TRUE(adjusted.Says(NotWritable())) << adjusted.err;
  const std::string output = folder_.Path("out.txt");
  const ProgramRun saved =
      Program({"chains", project_, "main", "--output", output}).WithoutRights().Run();
  EXPECT_EQ(saved.status, 4);
  EXPECT_NE(saved.err.find("W9402 Cannot open file to write (" + output + ")"), std::string::npos)
      << saved.err;
  EXPECT_EQ(KeptLines(), "");
  EXPECT_FALSE(fs::exists(output));
  fs::permissions(folder_.Root(), fs::perms(0755));

  // The file alone is protected, in a folder that is not.
  folder_.Put("app.psg", Line("main", 1));
  fs::permissions(systemFile_, fs::perms(0444));
  fs::permissions(folder_.Root(), fs::perms(0777));
  EXPECT_EQ(Adjust("f", 5).WithoutRights().Run().status, 4);
  EXPECT_EQ(KeptLines(), Line("main", 1));
}

}  // namespace
}  // namespace velkor
