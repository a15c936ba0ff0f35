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

TEST_F(StopTest, EndsTheWaitForALock) {
  PutChain();
  host.files.Put(kSystemFile, "f, ADD=5\r\n");
  host.files.Hold(kSystemFile);
  Open();
  recorder.queue.RunUntil([this] { return document.Has(JobKind::kSpecRead); });
  document.Stop(JobKind::kSpecRead);
  recorder.queue.Drain();
  EXPECT_FALSE(Logged("W9429"));
  EXPECT_EQ(Total("main"), 60u);
  host.files.Release(kSystemFile);
  document.Recalculate();
  Finish();
  EXPECT_EQ(Total("main"), 65u);

  const auto stop = [&](JobKind kind) {
    document.Stop(kind);
    recorder.queue.Drain();
    EXPECT_FALSE(Logged("W940"));
    EXPECT_FALSE(document.AnyWritingFailed());
  };
  // Locked when the new file is whole.
  const auto stopped = [&](const std::string& path, JobKind kind, const auto& save) {
    host.files.BeforeReplace([this, path] {
      host.files.Hold(path);
      held.Set();
    });
    EXPECT_TRUE(save());
    held.Wait();
    stop(kind);
    host.files.BeforeReplace(nullptr);
    host.files.Release(path);
  };
  const std::string old = "C:\\old.txt";
  host.files.Put(old, "old");
  stopped(old, JobKind::kSpecWrite, [&] { return document.SaveSpecFile(old); });
  stopped(old, JobKind::kChainSave, [&] {
    return document.SaveCallChains(old, *Find("main"), true, StkChainReport::Format::kText);
  });
  EXPECT_EQ(host.files.Get(old), "old");
  StkAdjustment adjustment;
  adjustment.margin = 6;
  stopped(kSystemFile, JobKind::kSpecWrite,
          [&] { return document.AdjustFunction(*Find("f"), adjustment); });
  adjustment.margin = 7;
  host.files.Hold(kSystemFile);
  ASSERT_TRUE(document.AdjustFunction(*Find("f"), adjustment));
  stop(JobKind::kSpecWrite);
  host.files.Release(kSystemFile);
  EXPECT_EQ(host.files.Get(kSystemFile), "f, ADD=5\r\n");
  document.DeleteContents();
  EXPECT_EQ(host.files.Get(kSystemFile), "f, ADD=7\r\n");
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
