#include "document/chain_report_job.h"

#include <thread>

#include "document_host.h"

namespace velkor {
namespace {

using testing::DocumentHost;
using Posted = std::vector<std::pair<uint32_t, uint64_t>>;
using Format = StkChainReport::Format;

class ChainSavingTest : public DocumentHost {
 protected:
  void Analyse(const std::vector<std::string>& functions) {
    PutProject({"a"});
    PutModule("a", functions);
    OpenAndFinish();
    window.handled.clear();
    recorder.log.lines.clear();
  }
};

TEST_F(ChainSavingTest, AReportTellsItsCourse) {
  std::vector<std::string> functions{"main 4"};
  for (int i = 10; i < 35; ++i) {
    functions.front() += " f" + std::to_string(i);
    functions.push_back("f" + std::to_string(i) + " 6");
  }
  Analyse(functions);
  ASSERT_TRUE(document.SaveCallChains("C:\\r.csv", *Find("main"), true, Format::kCsv));
  Finish();
  EXPECT_EQ(window.handled, (Posted{{WM_STK_CHAINSAVE_START, 26},
                                    {WM_STK_CHAINSAVE_PROGRESS, 10},
                                    {WM_STK_CHAINSAVE_PROGRESS, 20},
                                    {WM_STK_CHAINSAVE_END, 0}}));
  EXPECT_EQ(recorder.log.lines,
            (std::vector<std::string>{"C:\\r.csv Writing...", "C:\\r.csv Writing completed."}));
  window.handled.clear();
  ASSERT_TRUE(document.SaveCallChains("C:\\r.txt", *Find("main"), true, Format::kText));
  Finish();
  EXPECT_EQ(window.handled[0].second, 25u);
  const std::string text = host.files.Get("C:\\r.txt").value();
  EXPECT_EQ(text.substr(0, text.find('\n')), "main(10,4)+--f10(6,6)\r");
  const std::string tooLong(256, 'x');
  ASSERT_TRUE(document.SaveCallChains(tooLong, *Find("main"), true, Format::kText));
  Finish();
  EXPECT_TRUE(Logged("W9407 Too long file name (" + tooLong + ")"));
}

TEST_F(ChainSavingTest, AReportKeepsTheAnalysisFromBeingChanged) {
  PutChain();
  OpenAndFinish();
  ASSERT_TRUE(document.SaveCallChains("C:\\r.txt", *Find("main"), false, Format::kText));
  EXPECT_FALSE(document.CanChangeAnalysis());
  EXPECT_FALSE(document.CancelAllAdjustments());
  EXPECT_FALSE(document.LoadSpecFile("C:\\u.txt"));
  EXPECT_TRUE(document.SaveCallChains("C:\\r.csv", *Find("main"), true, Format::kCsv));
  Finish();
  EXPECT_TRUE(document.CanChangeAnalysis());
  EXPECT_EQ(host.files.Get("C:\\r.txt"), "main(60,10)---f(50,20)---g(30,30)\r\n");
  EXPECT_TRUE(Logged("C:\\r.csv Writing completed."));
  for (const char* input : {kProject, "C:\\p\\b.asm"}) {
    const auto before = host.files.Get(input);
    EXPECT_TRUE(document.SaveCallChains(input, *Find("main"), true, Format::kText));
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
  Analyse(functions);
  ASSERT_TRUE(document.SaveCallChains("C:\\r.txt", *Find("l0"), true, Format::kText));
  while (window.lastPosted != WM_STK_CHAINSAVE_PROGRESS) {
    std::this_thread::yield();
  }
  recorder.queue.Drain();
  EXPECT_TRUE(monitor.CanStop());
  document.StopChainSave();
  recorder.queue.Drain();
  EXPECT_FALSE(monitor.CanStop());
  EXPECT_TRUE(Logged("C:\\r.txt Writing aborted."));
  EXPECT_FALSE(Logged("W9450"));
  EXPECT_FALSE(host.files.Get("C:\\r.txt")->empty());
}

}  // namespace
}  // namespace velkor
