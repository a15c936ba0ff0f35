#include "document/document.h"

#include "document_host.h"

namespace velkor {
namespace {

using testing::DocumentHost;
using Hints = std::vector<ViewHint>;

class DocumentTest : public DocumentHost {
 protected:
  void ExpectTablesAreAJobs() {
    EXPECT_TRUE(document.BelongsToJob());
    EXPECT_EQ(document.FunctionTable(), nullptr);
    EXPECT_EQ(document.RootList(), nullptr);
    EXPECT_EQ(document.Bounds(), nullptr);
  }
};

TEST_F(DocumentTest, ARecalculationThatFailsCanBeTriedAgain) {
  PutChain();
  OpenAndFinish();
  host.files.Remove(kProject);
  document.Recalculate();
  EXPECT_FALSE(document.HasJobs());
  EXPECT_EQ(document.Input(), nullptr);
  EXPECT_EQ(document.PathName(), kProject);
  PutChain();
  PutModule("b", {"g 40"});
  recorder.reporter.SetOpenedFromCommandLine(true);
  document.Recalculate();
  EXPECT_FALSE(recorder.reporter.OpenedFromCommandLine());
  Finish();
  EXPECT_EQ(Total("main"), 70u);
}

TEST_F(DocumentTest, AJobThatRanOutOfMemoryIsKnownUntilTheNextAnalysis) {
  const std::string module = ModulePath("a");
  for (const auto& [file, threads] :
       {std::pair(module, 1u), {module, 4u}, {std::string(kSystemFile), 1u}}) {
    SCOPED_TRACE(file);
    PutChain();
    host.files.Put(kSystemFile, "f, ADD=1\n" + std::string(10240, '\n'));
    auto reads = std::make_shared<std::atomic<int>>(file == module ? 1 : 0);
    host.files.OnRead(file, [reads] {
      if (++*reads == 2) {
        throw std::bad_alloc();
      }
    });
    host.host.threads = threads;
    recorder.log.lines.clear();
    OpenAndFinish();
    EXPECT_TRUE(document.AnyJobFailed());
    EXPECT_EQ(document.FunctionTable()->Count(), file == module ? 0u : 3u);
    EXPECT_EQ(document.FunctionTable()->AdjustedCount(), 0u);
    EXPECT_TRUE(file == module || Total("main") == 60u) << "without what was read";
    EXPECT_TRUE(file != module || (Logged("W9401 Cannot open file to read (" + file + ").") &&
                                   Logged(file + " Reading aborted.")));
    host.files.OnRead(file, [] {});
    document.Recalculate();
    Finish();
    EXPECT_FALSE(document.AnyJobFailed()) << file;
  }
}

TEST_F(DocumentTest, AdjustmentsTellWhetherACalleeListChanged) {
  PutProject({"a"});
  PutModule("a", {"indirect main 10", "f 20", "g 30"});
  OpenAndFinish();
  view.Take();
  StkFunction& main = *Find("main");
  StkAdjustment adjustment;
  adjustment.margin = 4;
  EXPECT_TRUE(document.AdjustFunction(main, adjustment));
  EXPECT_EQ(view.Take(), Hints{HINT_SIZES});
  EXPECT_EQ(main.totalStackSize, 14u);
  adjustment.SetCallees({Find("g")}, host.codePage);
  EXPECT_TRUE(document.AdjustFunction(main, adjustment));
  EXPECT_EQ(view.Take(), Hints{HINT_STRUCTURE});
  EXPECT_EQ(main.totalStackSize, 44u);
  EXPECT_TRUE(document.CancelAdjustment(main));
  EXPECT_EQ(view.Take(), Hints{HINT_STRUCTURE});
  EXPECT_TRUE(document.AdjustFunction(main, adjustment));
  view.Take();
  EXPECT_TRUE(document.CancelAllAdjustments());
  EXPECT_EQ(view.Take(), Hints{HINT_STRUCTURE});
  EXPECT_EQ(main.totalStackSize, 10u);
}

TEST_F(DocumentTest, BoundsAreThoseOfTheLastChange) {
  const auto known = [this](const char* name) {
    const StkBounds* bounds = document.Bounds();
    return bounds == nullptr ? 0 : bounds->Known(*Find(name));
  };
  EXPECT_EQ(document.Bounds(), nullptr);
  PutChain();
  Open();
  ExpectTablesAreAJobs();
  Finish();
  EXPECT_EQ(known("main"), 60u);
  StkAdjustment adjustment;
  adjustment.margin = 7;
  EXPECT_TRUE(document.AdjustFunction(*Find("f"), adjustment));
  EXPECT_EQ(known("main"), 67u);
  Finish();
  host.files.Put("C:\\p\\spec.txt", "g, ADD=100\n");
  EXPECT_TRUE(document.LoadSpecFile("C:\\p\\spec.txt"));
  ExpectTablesAreAJobs();
  Finish();
  EXPECT_EQ(known("main"), 167u);
  PutModule("b", {"g 40"});
  document.Recalculate();
  Finish();
  EXPECT_EQ(known("main"), 177u) << "with the adjustments that were saved";
  document.DeleteContents();
  EXPECT_EQ(document.Bounds(), nullptr);
}

}  // namespace
}  // namespace velkor
