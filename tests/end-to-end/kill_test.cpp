#include <algorithm>
#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>
#include <signal.h>
#include <string>

#include "program.h"
#include "scratch_folder.h"

namespace velkor {
namespace {

using testing::ModuleText;
using testing::Program;
using testing::ProgramRun;
using testing::ProjectText;
using testing::ReadFile;
using testing::ScratchFolder;

constexpr int kFunctions = 400;

// What the stk system file holds when all functions are adjusted, the first one by this margin.
std::string SystemFile(int firstMargin) {
  std::string text;
  for (int i = 0; i < kFunctions; ++i) {
    text += "f" + std::to_string(i) + ", ADD=" + std::to_string(i == 0 ? firstMargin : i) + "\r\n";
  }
  return text;
}

class Kills : public ::testing::Test {
 protected:
  Kills() {
    std::vector<testing::ModuleFunction> functions;
    for (int i = 0; i < kFunctions; ++i) {
      functions.push_back({"f" + std::to_string(i), "4", {}, false});
    }
    folder_.Put("a.asm", ModuleText("a.c", functions));
    project_ = folder_.Put("app.prj", ProjectText(".", {"a.c"}));
    folder_.Put("app.psg", SystemFile(1));
  }

  Program Adjust(int margin) const {
    return Program({"adjust", project_, "f0", "--margin", std::to_string(margin)});
  }
  std::string Saved() const { return ReadFile(folder_.Path("app.psg")); }

  ScratchFolder folder_;
  std::string project_;
};

TEST_F(Kills, AtAnyInstantLeaveTheOldOrTheNewAdjustmentsWhole) {
  const auto start = std::chrono::steady_clock::now();
  ASSERT_EQ(Adjust(2).Run().status, 0);
  const auto whole = std::chrono::duration_cast<std::chrono::microseconds>(
      std::chrono::steady_clock::now() - start);
  std::mt19937 random(1);
  int last = 2;
  int killed = 0;
  int replaced = 0;
  for (int margin = 3; margin < 203; ++margin) {
    const auto lifetime = whole * static_cast<int>(random() % 1200) / 1000;
    const ProgramRun run = Adjust(margin).KillAfter(lifetime).Run();
    killed += run.status == 1000 + SIGKILL ? 1 : 0;
    const std::string saved = Saved();
    if (saved == SystemFile(margin)) {
      last = margin;
      ++replaced;
    } else {
      ASSERT_EQ(saved, SystemFile(last)) << "torn by the kill at margin " << margin;
    }
  }
  EXPECT_GT(killed, 50);
  EXPECT_GT(replaced, 5);
  EXPECT_EQ(Adjust(999).Run().status, 0) << "what kills left behind is in nobody's way";
  EXPECT_EQ(Saved(), SystemFile(999));
}

}  // namespace
}  // namespace velkor
