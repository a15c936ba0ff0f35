#include <chrono>
#include <random>
#include <thread>

#include "document_host.h"

namespace velkor {
namespace {

using testing::DocumentHost;

class StopTest : public DocumentHost {
 protected:
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
  held.Wait();
  recorder.queue.Drain();  // must neither wait for the held job nor take it for ended
  EXPECT_TRUE(document.IsAnalysing());
  go.Set();
  Finish();
  EXPECT_EQ(Total("main"), 60u);
}

}  // namespace
}  // namespace velkor
