#include "document/job_monitor.h"

#include "document_host.h"

namespace velkor {
namespace {

using testing::DocumentHost;
using Calls = std::vector<std::string>;

class JobMonitorTest : public DocumentHost {
 protected:
  // Waits for the notification and handles everything before it, and it.
  void HandleUntil(uint32_t message) {
    recorder.queue.RunUntil([this, message] {
      return !window.handled.empty() && window.handled.back().first == message;
    });
  }
};

TEST_F(JobMonitorTest, DrivesTheProgressBarThroughAnAnalysis) {
  PutProject({"a", "b"});
  PutModule("a", {"main 10"});
  PutModule("b", {"f 10"});
  std::string text = "main, ADD=1\n" + std::string(9, '\n');
  host.files.Put(kSystemFile, text);
  Open();
  HandleUntil(WM_STK_ANALYSIS_START);
  EXPECT_TRUE(monitor.CanStop());
  HandleUntil(WM_STK_ANALYSIS_END);
  EXPECT_FALSE(monitor.CanStop());
  EXPECT_TRUE(document.IsReadingSpecifications());
  EXPECT_EQ(progress.calls, (Calls{"pos 0", "range 2", "step", "step", "pos 0"}));
  HandleUntil(WM_STK_SPECREAD_START);
  EXPECT_TRUE(monitor.CanStop());
  progress.calls.clear();
  HandleUntil(WM_STK_SPECREAD_END);
  EXPECT_FALSE(monitor.CanStop());
  // The runtime helper table comes first; what is left is the stk system file.
  const size_t count = progress.calls.size();
  ASSERT_GT(count, 4u);
  EXPECT_EQ(Calls(progress.calls.end() - 4, progress.calls.end()),
            (Calls{"pos 0", "range 21", "pos 21", "pos 0"}));
  monitor.Handle(WM_USER + 9, 5);
  monitor.Handle(WM_USER + 99, 5);
  monitor.Stop();
  EXPECT_EQ(progress.calls.size(), count);
}

TEST_F(JobMonitorTest, OfTwoJobsTheOneThatIsLeftCanStillBeStopped) {
  PutChain();
  OpenAndFinish();
  ASSERT_TRUE(document.SaveSpecFile("C:\\p\\spec.txt"));
  ASSERT_TRUE(document.SaveCallChains("C:\\p\\all.csv", *document.RootList()->Functions().front(),
                                      true, StkChainReport::Format::kCsv));
  monitor.Handle(WM_STK_SPECWRITE_START, 10);
  monitor.Handle(WM_STK_CHAINSAVE_START, 10);
  monitor.Handle(WM_STK_SPECWRITE_END, 0);
  EXPECT_TRUE(monitor.CanStop());
  monitor.Handle(WM_STK_CHAINSAVE_END, 0);
  EXPECT_FALSE(monitor.CanStop());
  Finish();
}

TEST_F(JobMonitorTest, WithoutModuleFilesStopIsDisabledAgain) {
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
