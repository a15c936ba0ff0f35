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
  // How long a run takes at most, as far as it is known: a busy machine takes longer, then shorter.
  auto whole = std::chrono::microseconds(20000);
  std::mt19937 random(1);
  int last = 1;
  int killed = 0;
  int replaced = 0;
  for (int margin = 2; killed < 100 || replaced < 25; ++margin) {
    ASSERT_LT(margin, 3000) << killed << " killed, " << replaced << " replaced";
    const auto lifetime = whole * static_cast<int>(random() % 1000) / 1000;
    const ProgramRun run = Adjust(margin).KillAfter(lifetime).Run();
    const bool wasKilled = run.status == 1000 + SIGKILL;
    ASSERT_TRUE(wasKilled || run.status == 0) << run.status << run.err;
    killed += wasKilled ? 1 : 0;
    whole = whole * (wasKilled ? 103 : 90) / 100;
    const std::string saved = Saved();
    if (saved == SystemFile(margin)) {
      last = margin;
      ++replaced;
    } else {
      ASSERT_EQ(saved, SystemFile(last)) << "torn by the kill at margin " << margin;
    }
  }
  EXPECT_EQ(Adjust(9999).Run().status, 0) << "what kills left behind is in nobody's way";
  EXPECT_EQ(Saved(), SystemFile(9999));
}

}  // namespace
}  // namespace velkor
