#include <algorithm>
#include <string>
#include <vector>

#include "document/adjustment_form.h"
#include "document/document_host.h"
#include "files/paths.h"
#include "fuzz/fuzz_host.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/fuzzers.h"
#include "fuzz/invariants.h"
#include "fuzz/literal_spec.h"
#include "fuzz/require.h"
#include "readers/open_input.h"

namespace velkor::testing {

namespace {

constexpr const char* kProject = "C:\\p\\app.prj";
constexpr const char* kSystemFile = "C:\\p\\app.psg";
constexpr const char* kUserFile = "C:\\p\\user.txt";
constexpr uint32_t kMaxSteps = 6;

// A whole program's files, the document over them and what a user does with it.
class AnalysisRun {
 public:
  // answer: to every stop question.
  AnalysisRun(const CodePage& codePage, size_t readingThreads, BoxAnswer answer)
      : answer_(answer), host_(codePage), reporter_(MessagesIn(codePage), boxes_, [this] {
          queue_.Post([this] { reporter_.HandleRequest(); });
        }) {
    host_.host.threads = readingThreads;
    boxes_.answerWith = [answer](const RecordingBoxes::Box& box) {
      return box.buttons == BoxButtons::kOk ? BoxAnswer::kOk : answer;
    };
    reporter_.RegisterLogView(&log_);
    host_.files.AddDirectory("C:\\p");
    window_.monitor = &monitor_;
  }

  void PutFiles(FuzzInput& input) {
    const std::string project(input.Section());
    host_.files.Put(kProject, project);
    const std::string systemFile(input.Section());
    const std::string userFile(input.Section());
    PutModules(input);
    host_.files.Put(kProject, project);
    if (!systemFile.empty()) {
      host_.files.Put(kSystemFile, systemFile);
    }
    host_.files.Put(kUserFile, userFile);
  }

  bool Open() {
    if (!document_.OnOpenDocument(kProject)) {
      return false;
    }
    document_.StartAnalysis();
    Finish();
    Check();
    firstFile_ = SystemFile();
    firstFileTaken_ = IsInForce(LiteralFile(firstFile_, {}, Table()));
    return Table().Count() > 0;
  }

  void LoadUserFile() {
    Require(document_.LoadSpecFile(kUserFile), "a file can be loaded");
    Finish();
    Check();
  }

  void Step(FuzzInput& steps) {
    StkFunction& function = *Table().Functions()[steps.Below(256) % Table().Count()];
    switch (steps.Below(4)) {
      case 0:
        Require(document_.CancelAdjustment(function), "an adjustment can be cancelled");
        break;
      case 1:
        Require(document_.CancelAllAdjustments(), "adjustments can be cancelled");
        Require(Table().AdjustedCount() == 0, "then none is left");
        break;
      default:
        Adjust(function, steps);
    }
    Finish();
    Check();
  }

  // What the saved file states in names that a reader understands (a symbol may hold what a line
  // cannot, and two functions one name) is in force again after the next analysis.
  void CheckReload() {
    CheckSavedLines();
    CheckFirstFileIsKept();
    const Statements stated = Effective(LiteralFile(SystemFile(), {}, Table()).stated, Table());
    const Statements before = Effective(InForce(Table()), Table());
    const std::vector<std::string> names = Names();
    document_.Recalculate();
    Finish();
    Check();
    Require(Names() == names, "the same files have the same functions");
    if (answer_ == BoxAnswer::kAbort) {
      return;  // the user has given the whole file up
    }
    const Statements after = Effective(InForce(Table()), Table());
    for (size_t i = 0; i < names.size(); ++i) {
      Require(!before[i] || stated[i] != before[i] || after[i] == before[i],
              "an adjustment outlives its analysis", names[i]);
    }
  }

  void CheckTexts(bool wholeInputs) const {
    CheckMessages(log_.lines, host_.codePage, wholeInputs);
  }

 private:
  StkFunctionTable& Table() { return *document_.FunctionTable(); }

  // Each where the project, however mutated, will look for one.
  void PutModules(FuzzInput& input) {
    if (const auto program = OpenInput(kProject, host_.host, reporter_)) {
      for (const std::string& path : program->Modules()) {
        if (!input.AtEnd()) {
          host_.files.Put(path, std::string(input.Section()));
        }
      }
    }
  }

  void Finish() {
    queue_.RunUntil([this] { return !document_.HasJobs(); });
    queue_.Drain();
  }

  void Check() {
    CheckDatabase(Table());
    CheckResults(Table(), *document_.RootList());
  }

  void Adjust(StkFunction& function, FuzzInput& steps) {
    AdjustmentForm form(Table(), function);
    form.SetMarginText(steps.Line());
    form.SetDepthText(steps.Line());
    for (uint32_t count = steps.Below(4); count > 0; --count) {
      StkFunction& callee = *Table().Functions()[steps.Below(256) % Table().Count()];
      if (form.CanAdd(callee)) {
        form.Add(callee);
      }
    }
    if (const auto refusal = form.Validate()) {
      ShowRefusal(*refusal, reporter_);
      return;
    }
    if (const auto adjustment = form.BuildAdjustment()) {
      Require(document_.AdjustFunction(function, *adjustment), "a function can be adjusted");
      Require(function.adjustment != nullptr && function.adjustment->margin == adjustment->margin,
              "then it is adjusted", function.name);
      Require(function.extraCallees == form.AddedCallees(), "then it calls what was added",
              function.name);
    }
  }

  // All that the file states.
  bool IsInForce(const LiteralFile& file) {
    const Statements inForce = InForce(Table());
    for (size_t i = 0; i < inForce.size(); ++i) {
      if (file.stated[i] && file.stated[i] != inForce[i]) {
        return false;
      }
    }
    return !file.hasStray;
  }

  std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const auto& function : Table().Functions()) {
      names.emplace_back(function->name);
    }
    return names;
  }

  std::string SystemFile() const { return host_.files.Get(kSystemFile).value_or(""); }

  // A line that is too long, and a function that no name tells from others, are the reasons for
  // which an adjustment is not in the file. Lines that are kept follow a comment.
  void CheckSavedLines() {
    const std::string text = SystemFile();
    const size_t kept = text.starts_with("#") ? 0 : std::min(text.find("\n#"), text.size());
    const bool wholeNames =
        std::none_of(Table().Functions().begin(), Table().Functions().end(),
                     [](const auto& f) { return f->name.find('\r') != std::string::npos; });
    const bool failed =
        std::any_of(log_.messages.begin(), log_.messages.end(), [](const StkMessage& message) {
          return message.key == MessageKey::kW9461 || message.key == MessageKey::kW9467;
        });
    if (wholeNames && !failed) {
      RequireEqual(static_cast<uint64_t>(std::ranges::count(text.substr(0, kept + 1), '\n')),
                   Table().CountForSpecFile(false),
                   "the stk system file has a line for each adjustment");
    }
  }

  // The first stk system file is in force, in its place or kept beside the new one.
  void CheckFirstFileIsKept() const {
    bool kept = firstFileTaken_;
    for (const std::string& path : host_.files.Paths()) {
      kept = kept || (path.starts_with(kSystemFile) && host_.files.Get(path) == firstFile_);
    }
    Require(kept, "an adjustment that could not be taken is kept");
  }

  const BoxAnswer answer_;
  std::string firstFile_;
  bool firstFileTaken_ = false;
  TestHost host_;
  RecordingBoxes boxes_;
  MessageQueue queue_;
  RecordingLog log_;
  StkReporter reporter_;
  QueuedMainWindow window_{queue_};
  NoProgress progress_;
  CStkDoc document_{host_.host, reporter_, window_};
  StkJobMonitor monitor_{document_, progress_};
};

}  // namespace

void FuzzAnalysis(std::string_view bytes) {
  FuzzInput input(bytes);
  const CodePage& codePage = input.Page();
  const uint32_t choices = input.Below(4);
  FuzzInput steps(input.Section());
  AnalysisRun run(codePage, 1 + choices % 2, choices < 2 ? BoxAnswer::kIgnore : BoxAnswer::kAbort);
  run.PutFiles(input);
  if (!run.Open()) {
    return;
  }
  run.LoadUserFile();
  for (uint32_t step = 0; step < kMaxSteps && !steps.AtEnd(); ++step) {
    run.Step(steps);
  }
  run.CheckReload();
  run.CheckTexts(IsWhole(bytes, codePage));
}

}  // namespace velkor::testing
