#include <thread>

#include "document_host.h"

namespace velkor {
namespace {

using testing::DocumentHost;

class StopTest : public DocumentHost {};

TEST_F(StopTest, InEveryModuleLeavesAProjectWithEmptyTables) {
  for (const char* name : {"a", "b"}) {
    PutChain();
    go.ResetEvent();
    HoldAt(ModulePath(name));
    Open();
    view.Take();
    StopHeld([this] { document.Stop(JobKind::kAnalysis); });
    host.files.OnRead(ModulePath(name), nullptr);
    recorder.queue.Drain();
    EXPECT_NE(document.Input(), nullptr);
    EXPECT_EQ(document.FunctionTable()->Count(), 0u);
    EXPECT_TRUE(document.RootList()->empty());
    EXPECT_FALSE(document.HasJobs());
    EXPECT_TRUE(view.Take().empty());
    document.Recalculate();
    Finish();
    EXPECT_EQ(Total("main"), 60u);
  }
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
  EXPECT_TRUE(document.Has(JobKind::kAnalysis));
  go.Set();
  Finish();
  EXPECT_EQ(Total("main"), 60u);
}

TEST_F(StopTest, WithoutModuleFilesStopIsDisabledAgain) {
  PutProject({"a"});
  OpenAndFinish();
  EXPECT_FALSE(monitor.CanStop());
  ASSERT_EQ(recorder.log.lines.size(), 1u);
  EXPECT_TRUE(recorder.log.lines[0].starts_with(
      "W9430 Cannot find CCTarn generated assembler source module file.\nS"));
  EXPECT_EQ(document.FunctionTable()->Count(), 0u);
  EXPECT_EQ(view.Take(), std::vector<ViewHint>{HINT_CLEAR});
}

}  // namespace
}  // namespace velkor
