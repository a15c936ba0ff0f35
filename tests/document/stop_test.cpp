#include <chrono>
#include <random>
#include <thread>

#include "document_host.h"

namespace velkor {
namespace {

using testing::DocumentHost;

class StopTest : public DocumentHost {
 protected:
  // A job that reads the path is stopped while it is there.
  void HoldAt(const std::string& path) {
    host.files.OnRead(path, [this] {
      reached.Set();
      go.Wait();
    });
  }
  // Calls stop while the job is held, and lets the job go on a little later.
  template <typename Stop>
  void StopHeld(Stop stop) {
    recorder.queue.RunUntil([this] { return reached.Test() || Poll(); });
    std::thread release([this] {
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
      go.Set();
    });
    stop();
    release.join();
  }
  // RunUntil waits for posted work: keep some coming.
  bool Poll() {
    recorder.queue.Post([] { std::this_thread::yield(); });
    return false;
  }
  void ExpectConsistent() {
    StkFunctionTable* table = document.FunctionTable();
    if (table == nullptr || table->Count() == 0) {
      return;
    }
    EXPECT_EQ(table->Count(), 3u);
    EXPECT_FALSE(document.RootList()->empty());
    uint32_t adjusted = 0;
    for (const auto& function : table->Functions()) {
      EXPECT_EQ(function->pendingAdjustment, nullptr);
      EXPECT_NE(function->totalStackSize, 0u);
      adjusted += function->adjustment ? 1u : 0u;
    }
    EXPECT_EQ(table->AdjustedCount(), adjusted);
  }

  Event reached{Event::Reset::kAutomatic};
  Event go{Event::Reset::kManual};
};

TEST_F(StopTest, InEveryModuleLeavesAProjectWithEmptyTables) {
  for (const char* name : {"a", "b"}) {
    PutChain();
    go.ResetEvent();
    HoldAt(ModulePath(name));
    Open();
    view.Take();
    StopHeld([this] { document.StopAnalysis(); });
    host.files.OnRead(ModulePath(name), nullptr);
    recorder.queue.Drain();
    EXPECT_NE(document.Project(), nullptr);
    EXPECT_EQ(document.FunctionTable()->Count(), 0u);
    EXPECT_TRUE(document.RootList()->empty());
    EXPECT_FALSE(document.IsReadingSpecifications());
    EXPECT_TRUE(view.Take().empty());
    document.Recalculate();
    Finish();
    EXPECT_EQ(Total("main"), 60u);
  }
}

TEST_F(StopTest, InTheStkSystemFileKeepsTheTotalsAndTellsNobody) {
  PutChain();
  host.files.Put(kSystemFile, "f, ADD=5\n" + std::string(3 * 10240, '\n'));
  HoldAt(kSystemFile);
  Open();
  StopHeld([this] { document.StopSpecRead(); });
  view.Take();
  recorder.queue.Drain();
  EXPECT_FALSE(document.IsReadingSpecifications());
  EXPECT_TRUE(document.CanChangeAnalysis());
  EXPECT_TRUE(view.Take().empty());
  EXPECT_EQ(Total("main"), 60u);
  ExpectConsistent();
}

TEST_F(StopTest, InsideAQuestionDoesNotWaitForTheAnswer) {
  PutChain();
  OpenAndFinish();
  host.files.Put("C:\\u.txt", "f, ADD=5\nwhat, ADD=1\n");
  ASSERT_TRUE(document.LoadSpecFile("C:\\u.txt", false));
  // The box is on screen while the user chooses Stop.
  recorder.boxes.answerWith = [this](const testing::RecordingBoxes::Box&) {
    document.StopSpecRead();
    return BoxAnswer::kRetry;
  };
  Finish();
  EXPECT_EQ(Total("f"), 50u);
  EXPECT_TRUE(Logged("W9410"));
  ExpectConsistent();
}

TEST_F(StopTest, ANewerJobIsNotFinishedByTheEndOfAnOlderOne) {
  PutChain();
  Open();
  while (window.lastPosted != WM_STK_ANALYSIS_END) {
    std::this_thread::yield();
  }
  HoldAt(ModulePath("a"));
  document.Recalculate();
  reached.Wait();
  recorder.queue.Drain();  // must neither wait for the held job nor take it for ended
  EXPECT_TRUE(document.IsAnalysing());
  go.Set();
  Finish();
  EXPECT_EQ(Total("main"), 60u);
}

TEST_F(StopTest, OpeningAnotherProjectStopsWhatRuns) {
  PutChain();
  host.files.Put(kSystemFile, "f, ADD=5\n");
  HoldAt(kSystemFile);
  Open();
  StopHeld([this] {
    host.files.AddDirectory("C:\\q");
    host.files.Put("C:\\q.prj", "[ProjectManager]\nPath=C:\\q\n[SrcFile]\nSource1=a.c\n");
    host.files.Put("C:\\q\\a.asm", Module("a.c", {"other 8"}));
    EXPECT_TRUE(document.OnOpenDocument("C:\\q.prj"));
    document.StartAnalysis();
  });
  Finish();
  EXPECT_EQ(document.PathName(), "C:\\q.prj");
  EXPECT_EQ(Total("other"), 8u);
}

TEST_F(StopTest, AtRandomMomentsLeavesAConsistentDocument) {
  PutChain();
  host.files.Put(kSystemFile, "f, ADD=5\ng, ADD=6\n" + std::string(200, '\n'));
  host.files.Put("C:\\u.txt", "main, ADD=1\nwhat, ADD=1\nbroken line\n" + std::string(200, '\n'));
  std::mt19937 random(20240611);
  document.OnOpenDocument(kProject);
  for (int i = 0; i < 1000; ++i) {
    if (document.CanChangeAnalysis() && document.FunctionTable() != nullptr &&
        document.FunctionTable()->Count() != 0 && random() % 2 == 0) {
      document.LoadSpecFile("C:\\u.txt", false);
    } else {
      document.Recalculate();
    }
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 400));
    for (unsigned turn = random() % 4; turn > 0; --turn) {
      recorder.queue.Drain();
      std::this_thread::sleep_for(std::chrono::microseconds(random() % 200));
    }
    switch (random() % 4) {
      case 0:
        document.StopAnalysis();
        document.StopSpecRead();
        break;
      case 1:
        monitor.Stop();
        break;
      case 2:
        document.OnOpenDocument(kProject);
        break;
      default:
        Finish();
        break;
    }
    if (document.CanChangeAnalysis()) {
      ExpectConsistent();
    }
  }
  document.Recalculate();
  Finish();
  EXPECT_EQ(Total("main"), 71u);
}

TEST_F(StopTest, AdjustmentsSurviveWhateverComesRightAfterThem) {
  PutChain();
  OpenAndFinish();
  std::mt19937 random(7);
  for (uint32_t margin = 1; margin <= 200; ++margin) {
    StkAdjustment adjustment;
    adjustment.margin = margin;
    ASSERT_TRUE(document.AdjustFunction(*Find("f"), adjustment));
    ASSERT_TRUE(document.AdjustFunction(*Find("g"), adjustment));
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 200));
    if (random() % 2 == 0) {
      recorder.queue.Drain();
    }
    monitor.Stop();
    switch (random() % 3) {
      case 0:
        document.Recalculate();
        break;
      case 1:
        Open();
        break;
      default:
        document.SaveSpecFile("C:\\copy.txt");
        document.Recalculate();
        break;
    }
    Finish();
    ASSERT_EQ(Total("main"), 60 + 2 * margin);
  }
  EXPECT_EQ(host.files.Get(std::string(kSystemFile) + ".bak"), std::nullopt);
}

}  // namespace
}  // namespace velkor
