#include "document/chain_report_job.h"

#include <chrono>
#include <thread>

#include "core/recompute.h"
#include "document_host.h"
#include "stoppable.h"
#include "support/graph.h"

namespace velkor {
namespace {

using testing::DocumentHost;
using testing::Graph;
using testing::QueuedMainWindow;
using testing::Recorder;
using testing::TestHost;
using Job = testing::Stoppable<StkChainReportJob>;
using Posted = std::vector<std::pair<uint32_t, uint64_t>>;
using Format = StkChainReport::Format;

class ChainReportJobTest : public ::testing::Test {
 protected:
  ChainReportJobTest() : graph(Fan(25)) {
    Recompute(graph.functions, roots, true, nullptr, nullptr, recorder.reporter);
  }

  // One function with that many callees: as many chains.
  static std::string Fan(int count) {
    std::string main = "main 4 ->";
    std::string callees;
    for (int i = 0; i < count; ++i) {
      const std::string name = "f" + std::to_string(i);
      main += " " + name;
      callees += name + " 6\n";
    }
    return main + "\n" + callees;
  }
  void Run(const std::string& path, Format format, std::vector<std::string> inputs = {}) {
    job = std::make_unique<Job>(
        ChainReportOrder{path, graph["main"], ChainMode::kAll, format, std::move(inputs)},
        host.host, recorder.reporter, window);
    job->Start();
    job->Wait();
    recorder.queue.Drain();
  }

  TestHost host;
  Recorder recorder{host.codePage};
  QueuedMainWindow window{recorder.queue};
  Graph graph;
  StkRootList roots;
  std::unique_ptr<Job> job;
};

TEST_F(ChainReportJobTest, TellsItsCourse) {
  Run("C:\\r.csv", Format::kCsv);
  EXPECT_EQ(window.handled, (Posted{{WM_STK_CHAINSAVE_START, 26},
                                    {WM_STK_CHAINSAVE_PROGRESS, 10},
                                    {WM_STK_CHAINSAVE_PROGRESS, 20},
                                    {WM_STK_CHAINSAVE_END, 0}}));
  EXPECT_EQ(recorder.log.lines,
            (std::vector<std::string>{"C:\\r.csv Writing...", "C:\\r.csv Writing completed."}));
  window.handled.clear();
  Run("C:\\r.txt", Format::kText);
  EXPECT_EQ(window.handled[0].second, 25u);
  const std::string text = host.files.Get("C:\\r.txt").value();
  EXPECT_EQ(text.substr(0, text.find('\n')), "main(10,4)+--f0(6,6)\r");
}

TEST_F(ChainReportJobTest, EveryFailureIsReportedOnceAndTheEndIsTold) {
  host.files.Put("C:\\app.prj", "project");
  host.files.Refuse("C:\\locked.txt");
  const std::string tooLong(256, 'x');
  const std::pair<std::string, std::string> cases[] = {
      {"C:\\app.prj", "W9402"}, {"C:\\locked.txt", "W9402"}, {tooLong, "W9407"}};
  for (const auto& [path, code] : cases) {
    window.handled.clear();
    recorder.log.lines.clear();
    Run(path, Format::kText, {"C:\\app.prj"});
    EXPECT_EQ(window.handled, (Posted{{WM_STK_CHAINSAVE_START, 25}, {WM_STK_CHAINSAVE_END, 0}}));
    ASSERT_EQ(recorder.log.lines.size(), 1u);
    EXPECT_EQ(recorder.log.lines[0].substr(0, 5), code);
  }
  EXPECT_EQ(host.files.Get("C:\\app.prj"), "project");

  recorder.log.lines.clear();
  host.files.SetCapacity(20);
  Run("C:\\full.txt", Format::kText);
  EXPECT_EQ(recorder.log.lines, (std::vector<std::string>{"C:\\full.txt Writing...",
                                                          "W9404 File write error (C:\\full.txt).",
                                                          "C:\\full.txt Writing aborted."}));
  EXPECT_EQ(window.handled.back().first, WM_STK_CHAINSAVE_END);
}

class ChainSavingTest : public DocumentHost {};

TEST_F(ChainSavingTest, AReportKeepsTheAnalysisFromBeingChanged) {
  PutChain();
  OpenAndFinish();
  ASSERT_TRUE(document.SaveCallChains("C:\\r.txt", *Find("main"), false, Format::kText));
  EXPECT_TRUE(document.IsSavingCallChains());
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
  PutProject({"a"});
  std::vector<std::string> functions;
  for (int i = 0; i < 20; ++i) {
    const std::string next = std::to_string(i + 1);
    functions.push_back("l" + std::to_string(i) + " 2 l" + next + " r" + next);
    functions.push_back("r" + std::to_string(i) + " 2 l" + next + " r" + next);
  }
  PutModule("a", functions);
  OpenAndFinish();
  ASSERT_TRUE(document.SaveCallChains("C:\\r.txt", *Find("l0"), true, Format::kText));
  while (window.lastPosted != WM_STK_CHAINSAVE_PROGRESS) {
    std::this_thread::yield();
  }
  recorder.queue.Drain();
  EXPECT_TRUE(monitor.CanStop());
  document.StopChainSave();
  recorder.queue.Drain();
  EXPECT_FALSE(document.IsSavingCallChains());
  EXPECT_FALSE(monitor.CanStop());
  EXPECT_TRUE(Logged("C:\\r.txt Writing aborted."));
  EXPECT_FALSE(Logged("W9450"));
  EXPECT_FALSE(host.files.Get("C:\\r.txt")->empty());
  document.Recalculate();
  Finish();
}

}  // namespace
}  // namespace velkor
