#include "document/chain_report_job.h"

#include <thread>

#include "document_host.h"

namespace velkor {
namespace {

using testing::DocumentHost;
using ReportFormat = StkChainReport::Format;

class ChainSavingTest : public DocumentHost {};

TEST_F(ChainSavingTest, AReportKeepsTheAnalysisFromBeingChanged) {
  PutChain();
  OpenAndFinish();
  ASSERT_TRUE(document.SaveCallChains("C:\\r.txt", *Find("main"), false, ReportFormat::kText));
  EXPECT_FALSE(document.CanChangeAnalysis());
  EXPECT_FALSE(document.CancelAllAdjustments());
  EXPECT_FALSE(document.LoadSpecFile("C:\\u.txt"));
  EXPECT_TRUE(document.SaveCallChains("C:\\r.csv", *Find("main"), true, ReportFormat::kCsv));
  Finish();
  EXPECT_TRUE(document.CanChangeAnalysis());
  EXPECT_EQ(host.files.Get("C:\\r.txt"), "main(60,10)---f(50,20)---g(30,30)\r\n");
  EXPECT_TRUE(Logged("C:\\r.csv Writing completed."));
  host.files.Put(kSystemFile, "f, ADD=5\r\n");
  for (const char* input : {kProject, "C:\\p\\b.asm", kSystemFile}) {
    const auto before = host.files.Get(input);
    EXPECT_TRUE(document.SaveCallChains(input, *Find("main"), true, ReportFormat::kText));
    Finish();
    EXPECT_EQ(host.files.Get(input), before);
  }
}

TEST_F(ChainSavingTest, AStopLeavesTheLinesWritten) {
  // A ladder of 2^20 chains: the report would run into the limit of lines.
  std::vector<std::string> functions;
  for (int i = 0; i < 20; ++i) {
    const std::string next = std::to_string(i + 1);
    for (const char* side : {"l", "r"}) {
      functions.push_back(side + std::to_string(i) + " 2 l" + next + " r" + next);
    }
  }
  PutProject({"a"});
  PutModule("a", functions);
  OpenAndFinish();
  ASSERT_TRUE(document.SaveCallChains("C:\\r.txt", *Find("l0"), true, ReportFormat::kText));
  while (window.lastPosted != WM_STK_CHAINSAVE_PROGRESS) {
    std::this_thread::yield();
  }
  recorder.queue.Drain();
  EXPECT_TRUE(monitor.CanStop());
  document.Stop(JobKind::kChainSave);
  recorder.queue.Drain();
  EXPECT_FALSE(monitor.CanStop());
  EXPECT_TRUE(Logged("C:\\r.txt Writing aborted."));
  EXPECT_FALSE(Logged("W9450"));
  EXPECT_FALSE(host.files.Get("C:\\r.txt")->empty());
}

}  // namespace
}  // namespace velkor
