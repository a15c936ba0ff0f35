#include <algorithm>

#include "document_host.h"
#include "support/memory_files.h"

namespace velkor {
namespace {

using testing::DocumentHost;
using testing::FileOperation;

enum class Job {  // in the order of kJobs
  kAnalysis,
  kAnalysisByThreads,
  kLoad,
  kAutomaticSave,
  kKeepingSave,  // an automatic save that meets another program's adjustments
  kUserSave,
  kTextReport,
  kCsvReport,
};

constexpr const char* kUserFile = "C:\\u.txt";
constexpr const char* kForeign = "main, ADD=1, RECTIME=4\r\n";

struct JobCase {
  Job job;
  const char* name;
  const char* output;  // the file that it writes, if any
};

constexpr JobCase kJobs[] = {
    {Job::kAnalysis, "Analysis", nullptr},
    {Job::kAnalysisByThreads, "AnalysisByThreads", nullptr},
    {Job::kLoad, "Load", nullptr},
    {Job::kAutomaticSave, "AutomaticSave", "C:\\p\\app.psg"},
    {Job::kKeepingSave, "KeepingSave", "C:\\p\\app.psg"},
    {Job::kUserSave, "UserSave", "C:\\out.txt"},
    {Job::kTextReport, "TextReport", "C:\\out.txt"},
    {Job::kCsvReport, "CsvReport", "C:\\out.csv"},
};

// Which operations each job performs at all, in the order of kJobs.
struct OperationCase {
  FileOperation operation;
  const char* name;
  std::string_view jobs;
};

constexpr OperationCase kOperations[] = {
    {FileOperation::kOpenMissing, "OpenMissing", "AALSK..."},
    {FileOperation::kOpenRefused, "OpenRefused", "AALSK..."},
    {FileOperation::kRead, "Read", "AALSK..."},
    {FileOperation::kLength, "Length", "AALSK..."},
    {FileOperation::kExists, "Exists", "AA..KUTC"},
    {FileOperation::kIsDirectory, "IsDirectory", "AA......"},
    {FileOperation::kCreate, "Create", "...SKUTC"},
    {FileOperation::kWrite, "Write", "...SKUTC"},
    {FileOperation::kSynchronize, "Synchronize", "...SK..."},
    {FileOperation::kClose, "Close", "...SKUTC"},
    {FileOperation::kReplace, "Replace", "...SK..."},
    {FileOperation::kIsSameFile, "IsSameFile", "...SKUTC"},
};

struct Expected {
  std::vector<std::string> codes;  // one of them is stated, with the path
  std::string path;
};

// What the message catalogue states for a failure of a reading job.
Expected ReadingFailure(FileOperation operation, const std::string& path) {
  const bool missing = operation == FileOperation::kOpenMissing;
  if (operation == FileOperation::kIsDirectory) {
    return {{"W9431"}, "C:\\p.asm"};  // the folder of the modules is not found to be one
  }
  if (path.ends_with(".prj")) {
    return {{missing ? "E9300" : "W9401"}, path};
  }
  if (path.ends_with(".asm")) {
    return {{missing ? "W9431" : "W9401"}, path};
  }
  if (path.ends_with(".psg")) {
    return {{"W9429"}, path};
  }
  if (path == kUserFile) {
    return {{missing ? "W9400" : "W9401"}, path};
  }
  // A library table: the built-in one takes its place, or it is read in part.
  return {{"W9427", "W9401"}, path};
}

Expected WritingFailure(FileOperation operation, const std::string& output, bool onOutput) {
  const bool writing = operation == FileOperation::kWrite ||
                       operation == FileOperation::kSynchronize ||
                       operation == FileOperation::kClose;
  return {{writing && onOutput ? "W9404" : "W9402"}, output};
}

class FaultMatrix : public DocumentHost,
                    public ::testing::WithParamInterface<std::tuple<OperationCase, JobCase>> {
 protected:
  FaultMatrix() { host.files.AddDirectory("C:\\data"); }

  static FileOperation Operation() { return std::get<0>(GetParam()).operation; }
  static JobCase Case() { return std::get<1>(GetParam()); }
  static bool IsAnalysis() {
    return Case().job == Job::kAnalysis || Case().job == Job::kAnalysisByThreads;
  }

  // The files as they were, and, for the jobs that need one, an analysis of them.
  void Prepare() {
    host.files.ClearFault();
    for (const std::string& path : host.files.Paths()) {
      host.files.Remove(path);
    }
    PutProject({"a", "b"});
    host.files.Put(kProject, *host.files.Get(kProject) + "[Options.CCTarn 0]\nLibrarychk=1\n");
    host.files.Put(ModulePath("a"), Module("a.c", {"main 10 f outside" + Unknown(), "f 20 g"}));
    host.files.Put(ModulePath("b"), Module("b.c", {"g 30 strlen"}));
    host.files.Put("C:\\data\\ltr.txt", "[@@own], ADD=4\n");
    host.files.Put("C:\\data\\lt.txt", "strlen, ADD=6\n" + std::string(11000, '\n'));
    host.files.Put(kSystemFile, "f, ADD=5\r\n");
    host.files.Put(kUserFile, "g, ADD=7\r\nmain, ADD=3\r\n");
    host.host.threads = Case().job == Job::kAnalysisByThreads ? 3 : 1;
    if (!IsAnalysis()) {
      OpenAndFinish();
    }
    if (Case().job == Job::kKeepingSave) {
      host.files.Put(kSystemFile, kForeign);
    }
    recorder.log.lines.clear();
    recorder.boxes.boxes.clear();
  }

  // Callees enough for several writes of every output.
  static std::string Unknown() {
    std::string names;
    for (int i = 0; i < 700; ++i) {
      names += " " + std::string(100, 'u') + std::to_string(i);
    }
    return names;
  }

  void Perform() {
    using Format = StkChainReport::Format;
    switch (Case().job) {
      case Job::kAnalysis:
      case Job::kAnalysisByThreads:
        if (document.OnOpenDocument(kProject)) {
          document.StartAnalysis();
        }
        break;
      case Job::kLoad:
        document.LoadSpecFile(kUserFile, false);
        break;
      case Job::kAutomaticSave:
      case Job::kKeepingSave: {
        StkAdjustment adjustment;
        adjustment.margin = 8;
        document.AdjustFunction(*Find("f"), adjustment);
        break;
      }
      case Job::kUserSave:
        document.SaveSpecFile(Case().output);
        break;
      case Job::kTextReport:
        document.SaveCallChains(Case().output, *Find("main"), true, Format::kText);
        break;
      case Job::kCsvReport:
        document.SaveCallChains(Case().output, *Find("main"), true, Format::kCsv);
        break;
    }
    Finish();
  }

  // What the user sees, and what stands in the file that the job writes.
  std::string Outcome() {
    std::string outcome;
    if (document.FunctionTable() != nullptr) {
      for (const auto& function : document.FunctionTable()->Functions()) {
        outcome +=
            std::string(function->name) + " " + std::to_string(function->totalStackSize) + "\n";
      }
      for (const StkFunction* root : document.RootList()->Functions()) {
        outcome += "root " + std::string(root->name) + "\n";
      }
    }
    if (Case().output != nullptr) {
      outcome += host.files.Get(Case().output).value_or("no file");
    }
    return outcome;
  }

  bool HasWarned() const {
    const auto isWarning = [](const std::string& text) { return text.starts_with("W9"); };
    return !recorder.boxes.boxes.empty() ||
           std::any_of(recorder.log.lines.begin(), recorder.log.lines.end(), isWarning);
  }

  bool States(const Expected& expected) const {
    return std::any_of(recorder.boxes.boxes.begin(), recorder.boxes.boxes.end(), [&](auto& box) {
      const bool coded =
          std::any_of(expected.codes.begin(), expected.codes.end(),
                      [&](const std::string& code) { return box.text.starts_with(code); });
      return coded && box.text.find("(" + expected.path + ")") != std::string::npos;
    });
  }

  void ExpectNothingLeftBehind() {
    EXPECT_EQ(host.files.OpenFiles(), 0);
    for (const std::string& path : host.files.Paths()) {
      EXPECT_FALSE(path.ends_with(".tmp")) << path;
    }
    EXPECT_TRUE(document.CanChangeAnalysis());
    EXPECT_FALSE(monitor.CanStop());
  }

  // After an automatic save: the old file or the new one, and the other program's kept.
  void ExpectNoAdjustmentLost() {
    const std::string saved = host.files.Get(kSystemFile).value_or("none");
    if (Case().job == Job::kKeepingSave) {
      const bool replaced = saved == "main, ADD=1\r\nf, ADD=8\r\n";
      EXPECT_TRUE(replaced || saved == kForeign) << saved;
      EXPECT_TRUE(!replaced || host.files.Get(std::string(kSystemFile) + ".bak") == kForeign);
    } else {
      const bool saves = Case().job == Job::kAutomaticSave;
      EXPECT_TRUE(saved == "f, ADD=5\r\n" || (saves && saved == "f, ADD=8\r\n")) << saved;
    }
  }

  void CheckFailure(const std::string& sound) {
    const std::string path = host.files.GetFault().path;
    const bool onOutput = Case().output != nullptr && path.starts_with(Case().output) &&
                          path.find(".bak") == std::string::npos;
    const Expected expected = Case().output == nullptr
                                  ? ReadingFailure(Operation(), path)
                                  : WritingFailure(Operation(), Case().output, onOutput);
    SCOPED_TRACE(path);
    ExpectNothingLeftBehind();
    ExpectNoAdjustmentLost();
    // A missing stk system file is nothing to tell of.
    const bool silent =
        IsAnalysis() && Operation() == FileOperation::kOpenMissing && path == kSystemFile;
    const bool differs = Outcome() != sound;
    if (HasWarned() || (differs && !silent)) {
      EXPECT_TRUE(States(expected)) << expected.codes.front() << "\n" << LoggedLines();
    }
  }

  std::string LoggedLines() const {
    std::string text;
    for (const std::string& line : recorder.log.lines) {
      text += line + "\n";
    }
    return text;
  }
};

TEST_P(FaultMatrix, EveryCallFailsOnce) {
  Prepare();
  Perform();
  const std::string sound = Outcome();
  ASSERT_FALSE(HasWarned()) << LoggedLines();
  int calls = 0;
  for (bool reached = true; reached && !HasFailure(); calls += reached ? 1 : 0) {
    SCOPED_TRACE("call " + std::to_string(calls + 1));
    Prepare();
    host.files.FailAt(Operation(), calls + 1);
    Perform();
    reached = host.files.GetFault().hit;
    if (reached) {
      CheckFailure(sound);
    }
    host.files.ClearFault();
    recorder.log.lines.clear();
    recorder.boxes.boxes.clear();
    Perform();
    EXPECT_EQ(Outcome(), sound) << "once more, without a failure";
    EXPECT_FALSE(HasWarned()) << LoggedLines();
    ExpectNoAdjustmentLost();
  }
  EXPECT_EQ(calls > 0, std::get<0>(GetParam()).jobs[static_cast<size_t>(Case().job)] != '.');
}

INSTANTIATE_TEST_SUITE_P(
    , FaultMatrix, ::testing::Combine(::testing::ValuesIn(kOperations), ::testing::ValuesIn(kJobs)),
    [](const auto& test) {
      return std::string(std::get<1>(test.param).name) + "_" + std::get<0>(test.param).name;
    });

}  // namespace
}  // namespace velkor
