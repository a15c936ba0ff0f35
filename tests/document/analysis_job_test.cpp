#include "document/analysis_job.h"

#include "document_host.h"
#include "readers/open_input.h"
#include "stoppable.h"

namespace velkor {
namespace {

using testing::DocumentHost;
using AnalysisUnderTest = testing::Stoppable<StkAnalysisJob>;

class AnalysisJobTest : public DocumentHost {
 protected:
  // One thread reads nothing before its turn, so that a test can count on what has been read.
  AnalysisJobTest() { host.host.threads = 1; }
  void RunJob() {
    window.monitor = nullptr;
    input = OpenInput(kProject, host.host, recorder.reporter);
    ASSERT_NE(input, nullptr);
    job.emplace(AnalysisParts{host.host, recorder.reporter, *input, {functions, files}}, window);
    job->Start();
    job->Wait();
    recorder.queue.Drain();
  }
  std::vector<uint32_t> Notifications() const {
    std::vector<uint32_t> numbers;
    for (const auto& [message, parameter] : window.handled) {
      numbers.push_back(message);
    }
    return numbers;
  }

  std::unique_ptr<ProgramInput> input;
  StkFileTable files{host.codePage};
  StkFunctionTable functions{host.codePage};
  std::optional<AnalysisUnderTest> job;
};

using Numbers = std::vector<uint32_t>;

TEST_F(AnalysisJobTest, ReadsEveryModuleThatCanBeRead) {
  PutProject({"a", "missing", "locked", "broken", "b"});
  PutModule("a", {"main 10 g"});
  host.files.Put(ModulePath("locked"), "");
  host.files.Refuse(ModulePath("locked"));
  host.files.Put(ModulePath("broken"), "no header\n");
  PutModule("b", {"g 30"});
  RunJob();
  EXPECT_EQ(job->End(), WorkEnd::kCompleted);
  using enum ModuleOutcome;
  EXPECT_EQ(job->Outcomes(),
            (std::vector<ModuleOutcome>{kRead, kMissing, kMissing, kNotWhole, kRead}));
  EXPECT_EQ(functions.Count(), 2u);
  EXPECT_EQ(functions.UnknownCount(), 0u);
  EXPECT_EQ(functions.Functions()[0]->callees.size(), 1u);
  const Numbers step(5, WM_STK_ANALYSIS_STEP);
  Numbers expected{WM_STK_ANALYSIS_START};
  expected.insert(expected.end(), step.begin(), step.end());
  expected.push_back(WM_STK_ANALYSIS_END);
  EXPECT_EQ(Notifications(), expected);
  EXPECT_EQ(window.handled[0].second, 5u);
  EXPECT_EQ(recorder.log.Warnings(),
            (std::vector<std::string>{"W9431 C:\\p\\missing.asm:0", "W9401 C:\\p\\locked.asm:0",
                                      "W9432 C:\\p\\broken.asm:1"}));
}

// Within 100 lines of a long module, and before the next one of a short one.
TEST_F(AnalysisJobTest, AStopInsideAModuleEndsTheJob) {
  for (const size_t lines : {6000u, 0u}) {
    PutProject({"a", "b", "c", "d"});
    for (const char* name : {"a", "c", "d"}) {
      PutModule(name, {std::string(name) + " 10"});
    }
    std::string text = Module("b.c", {"f 10"});
    for (size_t i = 0; i < lines; ++i) {
      text += std::string(99, ';') + "\n";
    }
    host.files.Put(ModulePath("b"), text);
    const int stopAt = lines == 0 ? 1 : 2;
    int reads = 0;
    host.files.OnRead(ModulePath("b"), [this, stopAt, &reads] {
      if (++reads == stopAt) {
        job->RequestStop();
      }
    });
    window.handled.clear();
    RunJob();
    EXPECT_EQ(job->End(), WorkEnd::kStopped);
    EXPECT_TRUE(lines == 0 || reads == stopAt);
    EXPECT_FALSE(job->EndPosted());
    EXPECT_EQ(Notifications(),
              (Numbers{WM_STK_ANALYSIS_START, WM_STK_ANALYSIS_STEP, WM_STK_ANALYSIS_STEP}));
    EXPECT_TRUE(lines == 0 || recorder.log.lines.back() == "C:\\p\\b.asm Reading aborted.");
  }
}

TEST_F(AnalysisJobTest, AStopBetweenModulesNamesTheOneWhoseTurnItIs) {
  PutProject({"a", "b", "c"});
  for (const char* name : {"a", "b", "c"}) {
    PutModule(name, {"main 10"});
  }
  host.files.OnRead(ModulePath("b"), [this] { job->RequestStop(); });
  RunJob();
  EXPECT_EQ(job->End(), WorkEnd::kStopped);
  EXPECT_EQ(recorder.log.lines,
            (std::vector<std::string>{"C:\\p\\a.asm Reading...", "C:\\p\\a.asm Reading completed.",
                                      "C:\\p\\b.asm Reading...", "C:\\p\\b.asm Reading completed.",
                                      "C:\\p\\c.asm Reading aborted."}));
}

// Everything that an analysis of a project shows, read by so many threads: what is logged, told to
// the main window and found.
class ReadingThreads : public DocumentHost {
 protected:
  // Modules of all kinds and sizes; the first of them is not the first that is accepted.
  void PutModules() {
    host.files.Put(ModulePath("m0"), "no header\n");
    host.files.Put(ModulePath("m1"), "; Other C Compiler V3.70 Assembler Source\n");
    std::vector<std::string> sources{"m0", "m1", "missing", std::string(251, 'x')};
    for (int i = 2; i < 60; ++i) {
      const std::string name = "m" + std::to_string(i);
      sources.push_back(name);
      std::string text = Module(name + ".c", {"main 10 f" + std::to_string(i - 1),
                                              "f" + std::to_string(i) + " 20 main g"});
      text.replace(text.find("V3.70"), 5, i % 7 == 3 ? "V3.60" : "V3.30");
      text += i % 5 == 0 ? std::string(6000, 'x') + "\n" : "";
      text += i % 11 == 0 ? Lines(70000) : Lines(static_cast<size_t>(i * i * 4));
      host.files.Put(ModulePath(name), text);
    }
    PutProject(sources);
  }
  std::string Analyse(size_t threads) {
    host.host.threads = threads;
    recorder.log.lines.clear();
    window.handled.clear();
    OpenAndFinish();
    std::string shown;
    for (const std::string& line : recorder.log.lines) {
      shown += line + "\n";
    }
    for (const auto& [message, parameter] : window.handled) {
      shown += std::to_string(message) + " " + std::to_string(parameter) + "\n";
    }
    for (const auto& function : document.FunctionTable()->Functions()) {
      shown += std::string(function->name) + " " + std::to_string(function->totalStackSize);
      for (const StkFunction* callee : function->callees) {
        shown += " " + std::to_string(callee->index);
      }
      shown += "\n";
    }
    return shown;
  }
};

TEST_F(ReadingThreads, MakeNoDifference) {
  PutModules();
  const std::string shown = Analyse(1);
  EXPECT_NE(shown.find("W9405"), std::string::npos);
  EXPECT_NE(shown.find("W9406"), std::string::npos);
  EXPECT_NE(shown.find("W9435"), std::string::npos);
  EXPECT_GT(document.FunctionTable()->Count(), 80U);
  for (const size_t threads : {2U, 3U, 8U, 8U, 100U}) {
    EXPECT_EQ(Analyse(threads), shown) << threads;
  }
}

}  // namespace
}  // namespace velkor
