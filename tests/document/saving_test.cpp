#include <algorithm>
#include <thread>

#include "document_host.h"

namespace velkor {
namespace {

using testing::DocumentHost;

class SavingTest : public DocumentHost {
 protected:
  void PutAdjustable() {
    PutProject({"a"});
    PutModule("a", {"main 10 f outside", "f 20"});
  }
  void Adjust(const char* name, uint32_t margin) {
    StkAdjustment adjustment;
    adjustment.margin = margin;
    ASSERT_TRUE(document.AdjustFunction(*Find(name), adjustment));
  }
  std::string SystemFile() { return host.files.Get(kSystemFile).value_or("none"); }
  // Of the stk system file, where notes say that it is kept without effect.
  std::vector<uint32_t> StaleLines() {
    std::vector<uint32_t> lines;
    for (const StkNote& note : document.InputNotes()) {
      EXPECT_EQ(note.rule, "stale-statement");
      EXPECT_EQ(note.file, kSystemFile);
      lines.push_back(note.line);
    }
    return lines;
  }
  std::string Backup(const std::string& suffix) {
    return host.files.Get(std::string(kSystemFile) + suffix).value_or("none");
  }
  size_t Count(uint32_t message) const {
    return static_cast<size_t>(
        std::count_if(window.handled.begin(), window.handled.end(),
                      [message](const auto& handled) { return handled.first == message; }));
  }
};

TEST_F(SavingTest, AnAdjustmentSurvivesTheEndRightAfterIt) {
  PutAdjustable();
  {
    CStkDoc second(host.host, recorder.reporter, window);
    ASSERT_TRUE(second.OnOpenDocument(kProject));
    second.StartAnalysis();
    window.monitor = nullptr;
    while (second.BelongsToJob()) {
      second.Finish(JobKind::kAnalysis);
      second.Finish(JobKind::kSpecRead);
    }
    StkAdjustment adjustment;
    adjustment.margin = 9;
    ASSERT_TRUE(
        second.AdjustFunction(*second.FunctionTable()->FindBySpecName("", "f", false), adjustment));
  }
  EXPECT_EQ(SystemFile(), "f, ADD=9\r\n");
}

TEST_F(SavingTest, AStoppedAutomaticSaveIsMadeUpFor) {
  PutAdjustable();
  host.files.Put(kSystemFile, "main, ADD=1\r\n");
  OpenAndFinish();
  HoldAt(kSystemFile);
  Adjust("f", 5);
  StopHeld([this] {
    recorder.queue.Drain();
    EXPECT_TRUE(monitor.CanStop());
    monitor.Stop();
  });
  EXPECT_FALSE(document.Has(JobKind::kSpecWrite));
  EXPECT_EQ(SystemFile(), "main, ADD=1\r\n");
  recorder.queue.Drain();
  document.Recalculate();
  EXPECT_EQ(SystemFile(), "main, ADD=1\r\nf, ADD=5\r\n");
  Finish();
  EXPECT_EQ(Total("main"), 36u);
}

TEST_F(SavingTest, AStopAfterTheLastLineOfALoadedFileKeepsIt) {
  PutAdjustable();
  OpenAndFinish();
  host.files.Put("C:\\u.txt", "f, ADD=5\n");
  window.lastPosted = 0;
  ASSERT_TRUE(document.LoadSpecFile("C:\\u.txt"));
  while (window.lastPosted != WM_STK_SPECREAD_END) {
    std::this_thread::yield();
  }
  document.Stop(JobKind::kSpecRead);
  document.DeleteContents();
  EXPECT_EQ(SystemFile(), "f, ADD=5\r\n");
}

TEST_F(SavingTest, NothingThatTheAnalysisIsMadeFromIsOverwritten) {
  PutAdjustable();
  host.files.Put(kSystemFile, "f, ADD=5\r\n");
  OpenAndFinish();
  const std::string tooLong = "C:\\" + std::string(253, 'x');
  const std::string source = "C:\\p\\a.c";
  const std::string table = "C:\\data\\ltrsm.txt";
  const std::string copy = std::string(kSystemFile) + ".bak3";
  host.files.Put(source, "");
  host.files.Put(table, "");
  host.files.Put(copy, "");
  const std::string program = host.paths.ExecutablePath();
  host.files.Put(program, "");
  for (const std::string& path : {std::string(kProject), ModulePath("a"), std::string(kSystemFile),
                                  source, table, copy, program, tooLong}) {
    SCOPED_TRACE(path);
    const auto before = host.files.Get(path);
    recorder.log.lines.clear();
    window.handled.clear();
    ASSERT_TRUE(document.SaveSpecFile(path));
    Finish();
    EXPECT_EQ(host.files.Get(path), before);
    EXPECT_EQ(Count(WM_STK_SPECWRITE_END), 1u);
    ASSERT_EQ(recorder.log.lines.size(), 1u);
    EXPECT_EQ(recorder.log.lines[0].substr(0, 5), path == tooLong ? "W9407" : "W9402");
    EXPECT_TRUE(document.AnyWritingFailed());
    document.Recalculate();
    Finish();
    EXPECT_FALSE(document.AnyWritingFailed());
  }
}

TEST_F(SavingTest, AProjectThatIsItsOwnSystemFileIsNotOverwritten) {
  host.files.Put("C:\\p\\odd.psg", "[ProjectManager]\nPath=C:\\p\n[SrcFile]\nSource1=a.c\n");
  PutModule("a", {"f 20"});
  recorder.boxes.answerWith = [](const testing::RecordingBoxes::Box& box) {
    return box.buttons == BoxButtons::kAbortRetryIgnore ? BoxAnswer::kAbort : BoxAnswer::kOk;
  };
  ASSERT_TRUE(document.OnOpenDocument("C:\\p\\odd.psg"));
  document.StartAnalysis();
  Finish();
  const auto before = host.files.Get("C:\\p\\odd.psg");
  Adjust("f", 5);
  Finish();
  EXPECT_EQ(host.files.Get("C:\\p\\odd.psg"), before);
  EXPECT_TRUE(Logged("W9402"));
}

TEST_F(SavingTest, WhatCouldNotBeTakenIsKeptBesideTheNewFile) {
  PutAdjustable();
  const std::string old = "f, ADD=1\r\nmain, RECTIME=4\r\n";
  host.files.Put(kSystemFile, old);
  OpenAndFinish();
  Adjust("f", 5);
  Finish();
  EXPECT_EQ(SystemFile(), "main\r\nf, ADD=5\r\n");
  EXPECT_EQ(Backup(".bak"), old);
  EXPECT_TRUE(Logged("C:\\p\\app.psg.bak Writing completed."));
  Adjust("f", 6);
  Finish();
  EXPECT_EQ(Backup(".bak2"), "none");

  // A copy that is of something else stays.
  host.files.Put(kSystemFile, "main, ADD=1, RECTIME=3\r\n");
  Adjust("f", 7);
  Finish();
  EXPECT_EQ(SystemFile(), "main, ADD=1\r\nf, ADD=7\r\n");
  EXPECT_EQ(Backup(".bak"), old);
  EXPECT_EQ(Backup(".bak2"), "main, ADD=1, RECTIME=3\r\n");
}

TEST_F(SavingTest, LinesThatNameNoFunctionAreKeptUntilTheyDo) {
  PutAdjustable();
  const std::string heading =
      "# Kept without effect: each names a function that was not found.\r\n";
  const std::string lost = "\"my lost.c\"#g,ADD=4\r\n";
  const std::string gone = "main,  CALL=gone\r\n";
  host.files.Put(kSystemFile, "f, ADD=1\r\n" + lost + gone);
  OpenAndFinish();
  EXPECT_EQ(StaleLines(), (std::vector<uint32_t>{2, 3}));
  for (const uint32_t margin : {5u, 6u}) {
    Adjust("f", margin);
    Finish();
    EXPECT_EQ(SystemFile(), "f, ADD=" + std::to_string(margin) + "\r\n" + heading + lost + gone);
    EXPECT_EQ(Backup(".bak"), "none");
    document.Recalculate();
    Finish();
  }
  ASSERT_TRUE(document.HasStatement(*Find("main")));
  ASSERT_TRUE(document.CancelAdjustment(*Find("main")));
  Finish();
  EXPECT_EQ(StaleLines(), std::vector<uint32_t>{3});
  EXPECT_EQ(SystemFile(), "f, ADD=6\r\n" + heading + lost);
  host.files.Put(ModulePath("a"), Module("my lost.c", {"main 10 f", "f 20", "static g 2"}));
  document.Recalculate();
  Finish();
  Adjust("f", 7);
  Finish();
  std::string saved = SystemFile();
  EXPECT_EQ(saved.find('#'), saved.rfind('#')) << saved;
  EXPECT_NE(saved.find("g, ADD=4\r\n"), std::string::npos) << saved;
  ASSERT_TRUE(document.CancelAllAdjustments());
  Finish();
  EXPECT_EQ(SystemFile(), "");
}

TEST_F(SavingTest, StatedDirectCalleesOutliveOtherStatements) {
  PutAdjustable();
  host.files.Put(kSystemFile, "main, CALL=f\r\n");
  host.files.Put("C:\\u.txt", "main, ADD=6\r\n");
  OpenAndFinish();
  ASSERT_TRUE(document.LoadSpecFile("C:\\u.txt"));
  Finish();
  EXPECT_EQ(SystemFile(), "main, ADD=6, CALL=f\r\n");
  StkAdjustment onlyDirect;
  onlyDirect.directCallees = {Find("f")};
  ASSERT_TRUE(document.AdjustFunction(*Find("main"), onlyDirect));
  Finish();
  EXPECT_EQ(SystemFile(), "main, CALL=f\r\n");
  EXPECT_EQ(Find("main")->adjustment, nullptr);
}

TEST_F(SavingTest, ASystemFileThatCannotBeKeptIsNotReplaced) {
  PutAdjustable();
  const std::string old = "f, ADD=1\r\nmain, RECTIME=4\r\n";
  host.files.Put(kSystemFile, old);
  OpenAndFinish();
  host.files.Refuse(std::string(kSystemFile) + ".bak");
  Adjust("f", 5);
  Finish();
  EXPECT_EQ(SystemFile(), old);
  EXPECT_TRUE(Logged("W9402 Cannot open file to write (C:\\p\\app.psg)."));
  EXPECT_EQ(Find("f")->adjustment->margin, 5u);

  EXPECT_TRUE(document.SystemSaveFailed());
  EXPECT_EQ(view.hints.back(), HINT_SAVED);
  EXPECT_FALSE(document.SettleSystemSave());
  EXPECT_EQ(SystemFile(), old);
  host.files.Remove(kSystemFile);
  document.Recalculate();
  EXPECT_EQ(SystemFile(), "main\r\nf, ADD=5\r\n") << "tried once more before the analysis goes";
  EXPECT_FALSE(document.SystemSaveFailed());
  Finish();
  host.files.Put(kSystemFile, old);

  host.files.Refuse(kSystemFile);
  document.Recalculate();
  Finish();
  EXPECT_TRUE(Logged("W9429"));
  Adjust("f", 5);
  Finish();
  EXPECT_EQ(SystemFile(), old);
}

// Between the moment in which a name for the copy is chosen and that in which it gets it.
TEST_F(SavingTest, AnotherProgramsCopyIsNotReplaced) {
  PutAdjustable();
  const std::string old = "f, ADD=1\r\nmain, RECTIME=4\r\n";
  host.files.Put(kSystemFile, old);
  OpenAndFinish();
  host.files.BeforeReplace([this] {
    host.files.BeforeReplace(nullptr);
    host.files.Put(std::string(kSystemFile) + ".bak", "another's");
  });
  Adjust("f", 5);
  Finish();
  EXPECT_EQ(SystemFile(), old);
  EXPECT_TRUE(document.SystemSaveFailed());
  EXPECT_TRUE(document.SettleSystemSave());
  EXPECT_EQ(SystemFile(), "main\r\nf, ADD=5\r\n");
  EXPECT_EQ(Backup(".bak"), "another's");
  EXPECT_EQ(Backup(".bak2"), old);
}

}  // namespace
}  // namespace velkor
