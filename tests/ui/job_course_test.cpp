#include <QLabel>
#include <QProgressBar>
#include <QStatusBar>
#include <chrono>
#include <thread>

#include "main_window.h"

namespace velkor::ui {
namespace {

class JobCourse : public MainWindow {
 protected:
  int Progress() { return app->Frame().findChild<QProgressBar*>()->value(); }
  std::string Title() { return app->Frame().windowTitle().toStdString(); }
  std::string StatusText() {
    return app->Frame().statusBar()->findChild<QLabel*>()->text().toStdString();
  }
};

TEST_F(JobCourse, OpeningOrRecalculatingThatFailsLeavesNothingOfTheStoppedJob) {
  for (const Command command : {Command::kOpenProject, Command::kRecalculate}) {
    released.ResetEvent();
    reached.ResetEvent();
    BlockAt(kModuleB);
    if (command == Command::kOpenProject) {
      Start(kProject);
    } else {
      dialogs.answers = {kProject};
      Choose(Command::kOpenProject);
    }
    WaitUntilBlocked();
    EXPECT_NE(Progress(), 0);
    dialogs.answers = {"C:\\p\\none.prj"};
    host.files.Put(kProject, command == Command::kRecalculate ? "" : *host.files.Get(kProject));
    ChooseWhileBlocked(command);
    EXPECT_EQ(boxes.boxes.size(), 1U);
    HandleEvents();
    EXPECT_EQ(Progress(), 0);
    EXPECT_FALSE(IsEnabled(Command::kStop));
    boxes.boxes.clear();
  }
}

// What was posted behind the warning is not waiting for its box.
TEST_F(JobCourse, AJobEndsWhileAWarningIsOpen) {
  host.files.Put(kProject,
                 "[ProjectManager]\nPath=C:\\p\n[SrcFile]\nSource1=none.c\nSource2=a.c\n");
  bool ended = false;
  boxes.answerWith = [&](const testing::RecordingBoxes::Box&) {
    ended = WaitUntil([this] { return !HasJobs(); });
    return BoxAnswer::kOk;
  };
  ASSERT_TRUE(app->Start(kProject));
  // The analysis is over before the first of its messages is handled.
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  ASSERT_TRUE(WaitUntil([this] { return !boxes.boxes.empty(); }));
  EXPECT_TRUE(ended) << BoxTexts();
}

TEST_F(JobCourse, AFailedAutomaticSaveIsSeenUntilItIsMadeGood) {
  StartAndFinish();
  EXPECT_EQ(StatusText(), "For Help, press F1");
  host.files.SetCapacity(0);
  adjustAnswer = {true, StkAdjustment{}};
  adjustAnswer.adjustment->margin = 7;
  Choose(Command::kAdjustStackSize);
  Finish();
  EXPECT_EQ(Title(), "app.prj (adjustments not saved) - velkor");
  EXPECT_EQ(StatusText(), "The adjustments could not be saved in the stk system file.");

  boxes.answerWith = [](const auto& box) {
    return box.buttons == BoxButtons::kYesNo ? BoxAnswer::kNo : BoxAnswer::kOk;
  };
  for (const Command command : {Command::kExit, Command::kRecalculate, Command::kOpenProject}) {
    boxes.boxes.clear();
    dialogs.answers = {kProject};
    Choose(command);
    EXPECT_EQ(boxes.boxes.back().text,
              "The adjustments could not be saved in the stk system file (C:\\p\\app.psg).\n"
              "Do you want to go on and lose them?");
    EXPECT_EQ(boxes.boxes.size(), 2U) << "tried once more: " << BoxTexts();
    EXPECT_TRUE(app->Frame().isVisible());
    EXPECT_EQ(Function("main").totalStackSize, 37U);
  }
  host.files.SetCapacity(std::nullopt);
  boxes.boxes.clear();
  Choose(Command::kRecalculate);
  Finish();
  EXPECT_EQ(BoxTexts(), "");
  EXPECT_EQ(Title(), "app.prj - velkor");
  EXPECT_EQ(StatusText(), "For Help, press F1");
  EXPECT_EQ(Function("main").totalStackSize, 37U) << "made good first";
}

}  // namespace
}  // namespace velkor::ui
