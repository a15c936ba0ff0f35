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
TEST_F(SharedProject, TwoAdjustmentsAtOnceAreBothInForceOrSaidToBeLost) {
  for (int round = 1; round <= 30; ++round) {
    SCOPED_TRACE(round);
    if (round % 2 == 1) {
      fs::remove(systemFile_);
    }
    ProgramRun first;
    std::thread other([&] { first = Adjust("main", round).Run(); });
    const ProgramRun second = Adjust("f", round).Run();
    other.join();
    const std::string saved = ReadFile(systemFile_);
    for (const auto& [run, function] :
         {std::pair<const ProgramRun*, const char*>(&first, "main"), {&second, "f"}}) {
      const bool lost = saved.find(Line(function, round)) == std::string::npos;
      EXPECT_EQ(run->status, lost ? 4 : 0) << saved << run->err;
      EXPECT_TRUE(!lost || run->Says(NotWritable())) << run->err;
    }
    EXPECT_EQ(KeptLines(), saved) << "there is nothing to be kept beside";
  }
}

TEST_F(SharedProject, WhatAnotherHoldsIsWaitedForAndThenLeftAlone) {
  const std::string old = Line("main", 1);
  folder_.Put("app.psg", old);
  const int held = open(systemFile_.c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(flock(held, LOCK_EX), 0);  // as one that writes
  const ProgramRun besideWriter = Adjust("f", 5).Run();
  EXPECT_EQ(besideWriter.status, 4);
  EXPECT_TRUE(besideWriter.Says(Broken())) << besideWriter.err;
  EXPECT_TRUE(besideWriter.Says(NotWritable())) << besideWriter.err;
  EXPECT_EQ(KeptLines(), old);
  std::thread release([held] {
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    close(held);
  });
  const ProgramRun patient = Adjust("f", 5).Run();
  release.join();
  EXPECT_EQ(patient.status, 0) << patient.err;
  EXPECT_EQ(ReadFile(systemFile_), old + Line("f", 5));
}

TEST_F(SharedProject, AKilledSaveLeavesNothingAndACopyIsAsSecretAsTheFile) {
  folder_.Put("app.psg", "f, RECTIME=4\n");
  fs::permissions(systemFile_, fs::perms(0600));
  folder_.Put("app.psg.0123456789abcdef.tmp", "f, A");
  folder_.Put("app.psg.bak.0123456789abcdef.tmp", "f, A");
  EXPECT_EQ(Adjust("f", 5).Run().status, 0);
  EXPECT_EQ(KeptLines().size(), Line("f", 5).size() + 13);
  EXPECT_EQ(fs::status(systemFile_ + ".bak").permissions(), fs::perms(0600));
}

TEST_F(SharedProject, ASystemFileOutsideOfTheFolderIsNeitherReadNorWritten) {
  const ScratchFolder elsewhere;
  const std::string foreign = elsewhere.Put("foreign.psg", Line("main", 1));
  fs::create_symlink(foreign, systemFile_);
  const ProgramRun refused = Adjust("f", 5).Run();
  EXPECT_EQ(refused.status, 4);
  EXPECT_TRUE(refused.Says(Broken())) << refused.err;
  EXPECT_TRUE(refused.Says(NotWritable())) << refused.err;
  EXPECT_EQ(ReadFile(foreign), Line("main", 1));
  fs::remove(systemFile_);
  folder_.Put("kept/real.psg", Line("main", 1));
  fs::create_symlink("kept/real.psg", systemFile_);
  EXPECT_EQ(Adjust("f", 5).Run().status, 0);
  EXPECT_EQ(ReadFile(folder_.Path("kept/real.psg")), Line("main", 1) + Line("f", 5));
  EXPECT_TRUE(fs::is_symlink(systemFile_));
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
