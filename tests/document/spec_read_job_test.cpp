#include "document/spec_read_job.h"

#include <algorithm>

#include "core/recompute.h"
#include "document_host.h"
#include "files/fingerprint.h"
#include "stoppable.h"
#include "support/graph.h"

namespace velkor {
namespace {

using testing::Graph;
using testing::QueuedMainWindow;
using testing::Recorder;
using testing::TestHost;
using SpecReadUnderTest = testing::Stoppable<StkSpecReadJob>;

constexpr const char* kUser = "C:\\user.txt";
constexpr const char* kSystem = "C:\\app.psg";
constexpr const char* kTable = "C:\\table.txt";

class SpecReadJobTest : public ::testing::Test {
 protected:
  void Add(SpecificationKind kind, const std::string& path) {
    if (kind == SpecificationKind::kSystemFile) {
      sources.push_back(std::make_unique<StkSystemFileReader>(path, host.host, recorder.reporter));
    } else {
      sources.push_back(std::make_unique<StkSpecReader>(kind, path, host.host, recorder.reporter));
    }
  }
  SpecReadUnderTest& Make() {
    job = std::make_unique<SpecReadUnderTest>(std::move(sources), graph.functions, roots, bounds,
                                              true, recorder.reporter, window);
    return *job;
  }
  void Run() {
    Make().Start();
    // Questions are answered while the job runs.
    recorder.queue.RunUntil([this] { return job->EndPosted(); });
    job->Wait();
    recorder.queue.Drain();
  }
  // The totals of an analysis whose tables have been read.
  void Compute() { Recompute(graph.functions, roots, true, nullptr, nullptr, recorder.reporter); }
  size_t PendingCount() {
    return static_cast<size_t>(
        std::count_if(graph.functions.Functions().begin(), graph.functions.Functions().end(),
                      [](const auto& function) { return function->pendingAdjustment != nullptr; }));
  }

  TestHost host;
  Recorder recorder{host.codePage};
  QueuedMainWindow window{recorder.queue};
  Graph graph{"main 10 -> f lib\nf 20 -> f\n? x\nh 5 -> lib2\n"};
  StkRootList roots;
  StkBounds bounds{graph.functions};
  std::vector<std::unique_ptr<StkSpecReader>> sources;
  std::unique_ptr<SpecReadUnderTest> job;
};

TEST_F(SpecReadJobTest, AStopDiscardsTheInterruptedSourceAndStillComputes) {
  for (const bool computed : {false, true}) {
    std::string text = "f, ADD=1000\n";
    text.append(3 * 10240, '\n');
    host.files.Put(kUser, text);
    int reads = 0;
    host.files.OnRead(kUser, [this, &reads] {
      if (++reads == 2) {
        job->RequestStop();
      }
    });
    roots.Clear();
    if (computed) {
      Compute();
    }
    Add(SpecificationKind::kUserFile, kUser);
    Add(SpecificationKind::kUserFile, kTable);
    Make().Start();
    job->Wait();
    window.handled.clear();
    recorder.queue.Drain();
    EXPECT_EQ(job->End(), WorkEnd::kStopped);
    EXPECT_EQ(reads, 2);
    EXPECT_EQ(graph["main"].totalStackSize, 30u);
    EXPECT_EQ(graph["f"].adjustment, nullptr);
    EXPECT_EQ(PendingCount(), 0u);
    EXPECT_EQ(graph.functions.AdjustedCount(), 0u);
    EXPECT_EQ(window.handled.back().first, WM_STK_SPECREAD_PROGRESS);
    EXPECT_EQ(recorder.log.lines.back(), "C:\\user.txt Reading aborted.");
  }
  host.files.Put(kSystem, "f, ADD=1000\n");
  host.files.Hold(kSystem);
  roots.Clear();
  Add(SpecificationKind::kSystemFile, kSystem);
  Make().Start();
  job->Stop();
  EXPECT_EQ(job->End(), WorkEnd::kStopped);
  EXPECT_FALSE(roots.empty());
}

TEST_F(SpecReadJobTest, TotalsContainWhatABrokenTableSetBefore) {
  host.files.Put(kTable, "[lib2], ADD=50\n[lib2], what\n[x], ADD=9\n");
  Compute();
  Add(SpecificationKind::kLibraryTable, kTable);
  Run();
  EXPECT_EQ(graph["h"].totalStackSize, 55u);
  EXPECT_EQ(graph["x"].totalStackSize, 0u);
  EXPECT_TRUE(graph["x"].IsUnknown());
}

TEST_F(SpecReadJobTest, AFileHas32767Lines) {
  std::string text = "f, ADD=1\n" + std::string(32765, '\n') + "h, ADD=2\n";
  host.files.Put(kUser, text);
  Add(SpecificationKind::kUserFile, kUser);
  Run();
  EXPECT_EQ(graph["h"].totalStackSize, 7u);
  EXPECT_EQ(recorder.log.lines[1], "C:\\user.txt Reading completed.");
  recorder.log.lines.clear();
  host.files.Put(kUser, text + "h, ADD=3\n");
  Add(SpecificationKind::kUserFile, kUser);
  Run();
  EXPECT_EQ(graph["h"].totalStackSize, 7u);
  EXPECT_EQ(recorder.log.lines[1],
            "W9406 Too many lines in file (C:\\user.txt).\nThe limit is 32767.");
  EXPECT_EQ(recorder.log.lines[2], "C:\\user.txt Reading aborted.");
}

TEST_F(SpecReadJobTest, TheStkSystemFileCountsAsTakenOnlyWhole) {
  struct Case {
    const char* text;
    bool taken;
  };
  const Case cases[] = {
      {"", true},
      {"# by hand\n\n  \nf, ADD=5, RECTIME=2\nh, CALL=f\nmain\n", true},
      {"f, ADD=5\ngone.c#g, ADD=4\n", true},  // kept: a module that could not be read this time
      {"[x], ADD=5, CALL=gone\n", true},      // the same of a callee
      {"h, ADD=5, CALL=gone\nh, ADD=6\n", false},
      {"main, CALL=f\n", true},             // called directly as well
      {"f, ADD=5\nh, RECTIME=3\n", false},  // no recursion this time
      {"f, ADD=5\nmain broken\nh, ADD=3\n", false},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.text);
    recorder.log.lines.clear();
    host.files.Put(kSystem, test.text);
    recorder.log.lines.clear();
    Add(SpecificationKind::kSystemFile, kSystem);
    Run();
    EXPECT_EQ(job->TakenSystemFile().has_value(), test.taken);
    EXPECT_EQ(recorder.log.lines.empty(), test.taken);
    if (test.taken) {
      EXPECT_EQ(job->TakenSystemFile(), FileFingerprint(host.files, kSystem));
    }
  }
}

// Although no total is computed for it.
TEST_F(SpecReadJobTest, ADirectCalleeThatIsStatedSettlesTheBound) {
  graph["main"].flags |= FN_INDIRECT_CALL;
  graph.functions.SetLibrarySize(graph["lib"], 1);
  host.files.Put(kSystem, "f, RECTIME=1\nh, RECTIME=1\n");
  Add(SpecificationKind::kSystemFile, kSystem);
  Run();
  ASSERT_TRUE(bounds.Reasons(graph["main"]).Has(ReasonKind::kIndirect));
  EXPECT_EQ(recorder.log.lines,
            std::vector<std::string>{"note: The recursion depth 1 of function (h) has no effect: "
                                     "the function is not recursive."});
  host.files.Put(kUser, "main, CALL=f\n");
  Add(SpecificationKind::kUserFile, kUser);
  Run();
  EXPECT_EQ(bounds.State(graph["main"]), BoundState::kBounded);
  EXPECT_EQ(bounds.Known(graph["main"]), 30u);
  EXPECT_EQ(graph["main"].adjustment, nullptr);
  EXPECT_TRUE(graph["main"].extraCallees.empty());
}

}  // namespace
}  // namespace velkor
