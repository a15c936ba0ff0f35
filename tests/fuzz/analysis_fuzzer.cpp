#include <optional>
#include <string>
#include <vector>

#include "document/adjustment_form.h"
#include "document/document_host.h"
#include "files/paths.h"
#include "files/spec_line_parser.h"
#include "fuzz/fuzz_host.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/fuzzers.h"
#include "fuzz/invariants.h"
#include "fuzz/require.h"

namespace velkor::testing {

namespace {

constexpr const char* kProject = "C:\\p\\app.prj";
constexpr const char* kSystemFile = "C:\\p\\app.psg";
constexpr const char* kUserFile = "C:\\p\\user.txt";
constexpr uint32_t kMaxSteps = 6;

// What is stated about one function.
struct Statement {
  uint32_t margin = kNoMargin;
  uint32_t depth = kNoDepth;
  std::vector<uint32_t> callees;  // by index

  bool operator==(const Statement&) const = default;
  bool StatesNothing() const { return margin == kNoMargin && depth == kNoDepth && callees.empty(); }
};

std::vector<uint32_t> Indices(const StkFunctionList& list) {
  std::vector<uint32_t> indices;
  for (const StkFunction* function : list) {
    indices.push_back(function->index);
  }
  std::sort(indices.begin(), indices.end());
  return indices;
}

// In force, by index of the function. A depth counts only in recursion.
std::vector<std::optional<Statement>> InForce(const StkFunctionTable& table) {
  std::vector<std::optional<Statement>> all;
  for (const auto& function : table.Functions()) {
    std::optional<Statement>& statement = all.emplace_back();
    if (function->adjustment != nullptr) {
      statement = {function->adjustment->margin,
                   function->Is(FN_RECURSIVE) ? function->adjustment->depth : kNoDepth,
                   Indices(function->extraCallees)};
      if (statement->StatesNothing()) {
        statement.reset();
      }
    }
  }
  return all;
}

// A whole program's files, the document over them and what a user does with it.
class AnalysisRun {
 public:
  AnalysisRun(const CodePage& codePage, size_t readingThreads)
      : host_(codePage), reporter_(MessagesIn(codePage), boxes_) {
    host_.host.readingThreads = readingThreads;
    log_.SetReporter(reporter_);
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
    return document_.FunctionTable()->Count() > 0;
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

  void CheckReload() {
    const std::vector<std::optional<Statement>> stated = InForce(Table());
    const std::vector<bool> kept = ReadableStatements();
    const std::vector<std::string> names = Names();
    document_.Recalculate();
    Finish();
    Check();
    Require(Names() == names, "the same files have the same functions");
    const std::vector<std::optional<Statement>> reloaded = InForce(Table());
    for (size_t i = 0; i < names.size(); ++i) {
      if (kept[i]) {
        Require(reloaded[i] == stated[i], "an adjustment outlives its analysis", names[i]);
      }
    }
  }

  void CheckTexts(bool wholeInputs) const {
    CheckMessages(log_.lines, host_.codePage, wholeInputs);
  }

 private:
  StkFunctionTable& Table() { return *document_.FunctionTable(); }

  // Each where the project, however mutated, will look for one.
  void PutModules(FuzzInput& input) {
    StkProject project(host_.host, reporter_);
    if (project.Load(kProject)) {
      for (const std::string& path : project.Modules()) {
        if (!input.AtEnd()) {
          host_.files.Put(path, std::string(input.Section()));
        }
      }
    }
  }

  void Finish() {
    queue_.RunUntil([this] {
      return !document_.IsAnalysing() && !document_.IsReadingSpecifications() &&
             !document_.IsWritingSpecifications() && !document_.IsSavingCallChains();
    });
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
      Require(function.adjustment != nullptr, "then it is adjusted", function.name);
    }
  }

  std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const auto& function : Table().Functions()) {
      names.push_back(function->name);
    }
    return names;
  }

  // For each function whether the saved file states what is in force for it in names that a reader
  // understands: a symbol may hold what a line cannot, or two functions one name.
  std::vector<bool> ReadableStatements() {
    std::vector<bool> readable(Table().Count());
    std::vector<bool> named(Table().Count());
    const std::vector<std::optional<Statement>> stated = InForce(Table());
    std::string text = host_.files.Get(kSystemFile).value_or("");
    FuzzInput lines(text);
    while (!lines.AtEnd()) {
      std::string line(lines.Line());
      line = line.substr(0, line.find('\r'));
      SpecLineParser parser(
          {Table(), SpecificationKind::kSystemFile, systemFile_, 1, reporter_.Messages()}, line);
      if (!parser.Parse() || parser.Function() == nullptr) {
        continue;
      }
      const uint32_t index = parser.Function()->index;
      const Statement statement{parser.Margin(),
                                parser.Function()->Is(FN_RECURSIVE) ? parser.Depth() : kNoDepth,
                                Indices(parser.Callees())};
      readable[index] = !named[index] && stated[index] == statement;
      named[index] = true;
    }
    return readable;
  }

  const std::string systemFile_ = kSystemFile;
  TestHost host_;
  RecordingBoxes boxes_;
  MessageQueue queue_;
  RecordingLog log_{queue_};
  StkReporter reporter_;
  QueuedMainWindow window_{queue_};
  RecordingProgress progress_;
  CStkDoc document_{host_.host, reporter_, window_};
  StkJobMonitor monitor_{document_, progress_};
};

}  // namespace

void FuzzAnalysis(std::string_view bytes) {
  FuzzInput input(bytes);
  const CodePage& codePage = input.Page();
  const size_t readingThreads = 1 + input.Below(2);
  FuzzInput steps(input.Section());
  AnalysisRun run(codePage, readingThreads);
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
