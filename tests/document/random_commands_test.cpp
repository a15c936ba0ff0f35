#include <algorithm>
#include <chrono>
#include <random>
#include <thread>

#include "core/function_text.h"
#include "document_host.h"
#include "fuzz/invariants.h"
#include "fuzz/literal_spec.h"

namespace velkor {
namespace {

using testing::DocumentHost;
using testing::InForce;
using testing::Statement;
using testing::Statements;

constexpr uint32_t kFunctions = 24;  // in three modules; and an unknown one
constexpr int kSteps = 1000;
const Statements kNothing(kFunctions + 1);

bool IsStatic(uint32_t number) {
  return number % 8 == 5;
}

bool IsRecursive(uint32_t number) {
  return number % 8 == 3;
}

// The next function of the same module, or that of another one which it can see.
uint32_t CalleeOf(uint32_t number) {
  return number + (number % 2 == 0 || IsStatic(number + 8) ? 1 : 8);
}

std::string CNameOf(uint32_t number) {
  return (number < 10 ? "f0" : "f") + std::to_string(number);
}

// What one project's user has stated, as far as it is certain: a load that was stopped has been
// saved or has not.
struct ProjectModel {
  explicit ProjectModel(std::string where) : folder(std::move(where)) {}
  std::string Path() const { return folder + "\\app.prj"; }
  std::string SystemFile() const { return folder + "\\app.psg"; }

  std::string folder;
  std::vector<Statements> possible = {kNothing};
};

// A user who gives commands at any moment, against the real jobs.
class RandomCommands : public DocumentHost, public ::testing::WithParamInterface<unsigned> {
 protected:
  RandomCommands() : random_(GetParam()) {
    for (ProjectModel& project : projects_) {
      PutFiles(project.folder);
    }
    recorder.boxes.answerWith = [this](const testing::RecordingBoxes::Box& box) {
      return Answer(box);
    };
  }

  // Calls lead to higher numbers or to the function itself, so that what the user adds never makes
  // a recursion.
  void PutFiles(const std::string& folder) {
    host.files.AddDirectory(folder);
    std::string project = "[ProjectManager]\nPath=" + folder + "\n[SrcFile]\n";
    for (uint32_t module = 0; module < 3; ++module) {
      std::vector<std::string> functions;
      for (uint32_t i = module * 8; i < module * 8 + 8; ++i) {
        functions.push_back((IsStatic(i) ? "static " : "") + CNameOf(i) + " " +
                            std::to_string(10 + i) + (IsRecursive(i) ? " " + CNameOf(i) : "") +
                            (CalleeOf(i) < kFunctions ? " " + CNameOf(CalleeOf(i)) : " outside"));
      }
      const std::string name = std::to_string(module);
      project += "Source" + std::to_string(module + 1) + "=m" + name + ".c\n";
      host.files.Put(folder + "\\m" + name + ".asm",
                     Module("m" + name + ".c", functions) + Lines(Below(2) * 400));
    }
    host.files.Put(folder + "\\app.prj", project);
  }

  uint32_t Below(uint32_t limit) { return static_cast<uint32_t>(random_() % limit); }
  void Pause() { std::this_thread::sleep_for(std::chrono::microseconds(Below(150))); }
  std::string Saved(const ProjectModel& project) const {
    return host.files.Get(project.SystemFile()).value_or("");
  }
  ProjectModel& Project() { return projects_[current_]; }
  bool HasFunctions() {
    return document.CanChangeAnalysis() && document.FunctionTable() != nullptr &&
           document.FunctionTable()->Count() != 0;
  }

  BoxAnswer Answer(const testing::RecordingBoxes::Box& box) {
    if (box.buttons != BoxButtons::kAbortRetryIgnore) {
      return box.buttons == BoxButtons::kYesNo ? BoxAnswer::kYes : BoxAnswer::kOk;
    }
    Pause();
    if (Below(5) == 0) {
      Stop();  // while the question is open
    }
    constexpr BoxAnswer kAnswers[] = {BoxAnswer::kAbort, BoxAnswer::kRetry, BoxAnswer::kIgnore};
    return kAnswers[Below(3)];
  }

  void Stop() {
    readingStopped_ |=
        document.Has(JobKind::kAnalysis) || (document.Has(JobKind::kSpecRead) && !loading_);
    saveExpected_ = false;
    monitor.Stop();
  }

  StkFunction& Function(uint32_t number) { return *document.FunctionTable()->Functions()[number]; }
  std::string NameOf(uint32_t number) { return FunctionSpecName(Function(number), host.codePage); }
  std::string LineOf(uint32_t number, const Statement& statement) {
    std::string line = NameOf(number) + ", ADD=" + std::to_string(statement.margin);
    line += statement.depth == kNoDepth ? "" : ", RECTIME=" + std::to_string(statement.depth);
    for (const uint32_t callee : statement.callees) {
      line += ", CALL=" + NameOf(callee);
    }
    return line + "\r\n";
  }

  Statement AnyStatement(uint32_t number) {
    Statement statement;
    statement.margin = 1 + Below(40);
    statement.depth = number < kFunctions && IsRecursive(number) ? Below(4) : kNoDepth;
    for (uint32_t callee = number + 1; callee < kFunctions && Below(3) == 0; ++callee) {
      if (callee != CalleeOf(number)) {
        statement.callees.push_back(callee);
      }
    }
    return statement;
  }

  void Open() {
    current_ = Below(2);
    readingStopped_ = loading_ = saveExpected_ = false;
    if (Below(3) != 0 || document.PathName().empty()) {
      ASSERT_TRUE(document.OnOpenDocument(Project().Path()));
      document.StartAnalysis();
    } else {
      current_ = document.PathName() == projects_[0].Path() ? 0 : 1;
      document.Recalculate();
    }
    inForce_ = Project().possible;
  }

  void Close() {
    readingStopped_ = loading_ = saveExpected_ = false;
    document.DeleteContents();
  }

  void Adjust() {
    if (!HasFunctions()) {
      return;
    }
    SettleForSave();
    const uint32_t number = Below(kFunctions + 1);
    const Statement statement = AnyStatement(number);
    StkAdjustment adjustment;
    adjustment.margin = statement.margin;
    adjustment.depth = statement.depth;
    StkFunctionList callees;
    for (const uint32_t callee : statement.callees) {
      callees.push_back(&Function(callee));
    }
    adjustment.SetCallees(callees, host.codePage);
    ASSERT_TRUE(document.AdjustFunction(Function(number), adjustment));
    inForce_.front()[number] = statement;
    Project().possible = inForce_;
    saveExpected_ = true;
  }

  void Reset() {
    if (!HasFunctions()) {
      return;
    }
    SettleForSave();
    if (Below(4) == 0) {
      ASSERT_TRUE(document.CancelAllAdjustments());
      inForce_.front() = kNothing;
    } else {
      const uint32_t number = Below(kFunctions + 1);
      ASSERT_TRUE(document.CancelAdjustment(Function(number)));
      inForce_.front()[number].reset();
    }
    Project().possible = inForce_;
    saveExpected_ = true;
  }

  void Load() {
    if (!HasFunctions()) {
      return;
    }
    SettleForSave();
    Statements loaded = inForce_.front();
    const bool withCallees = Below(2) == 0;
    std::string text;
    bool anyCallee = false;
    Statements stated = kNothing;
    for (uint32_t count = 1 + Below(6); count > 0; --count) {
      const uint32_t number = Below(kFunctions + 1);
      if (stated[number]) {
        continue;
      }
      Statement& statement = stated[number].emplace(AnyStatement(number));
      if (!withCallees) {
        statement.callees.clear();
      }
      anyCallee |= !statement.callees.empty();
      text += LineOf(number, statement);
      text += Below(3) == 0 ? "nobody, ADD=1\n" : "";
      text += std::string(Below(2) * 200, '\n');
    }
    for (uint32_t number = 0; number <= kFunctions; ++number) {
      if (stated[number] && !anyCallee && loaded[number]) {
        // A file without any callee leaves those that there are.
        stated[number]->callees = loaded[number]->callees;
      }
      loaded[number] = stated[number] ? stated[number] : loaded[number];
    }
    host.files.Put("C:\\u.txt", text);
    ASSERT_TRUE(document.LoadSpecFile("C:\\u.txt"));
    loading_ = true;
    inForce_.push_back(loaded);
    Project().possible.insert(Project().possible.end(), inForce_.begin(), inForce_.end());
    saveExpected_ = true;
  }

  void Write() {
    using Format = StkChainReport::Format;
    if (document.FunctionTable() == nullptr || document.FunctionTable()->Count() == 0) {
      return;
    }
    switch (Below(3)) {
      case 0:
        SettleForSave();
        Project().possible = inForce_;
        document.SaveSystemFile();
        break;
      case 1:
        document.SaveSpecFile("C:\\mine.txt");
        break;
      default:
        document.SaveCallChains("C:\\report.txt", Function(Below(kFunctions)), Below(2) == 0,
                                Below(2) == 0 ? Format::kText : Format::kCsv);
        break;
    }
  }

  void Leave() { Below(8) == 0 ? Close() : Stop(); }

  void Step() {
    using This = RandomCommands;
    constexpr void (This::*kAny[])() = {&This::Open,  &This::Adjust, &This::Adjust, &This::Finish,
                                        &This::Reset, &This::Load,   &This::Finish, &This::Write,
                                        &This::Leave, &This::Leave,  &This::Finish, &This::Finish};
    (this->*kAny[Below(12)])();
    if (Below(2) == 0) {
      Pause();
    }
    if (Below(3) != 0) {
      recorder.queue.Drain();
    }
  }

  // What is in force is what the user has stated, or nothing after a stop. From here on it is
  // certain.
  void Settle() {
    const Statements inForce = InForce(*document.FunctionTable());
    const bool known = std::find(inForce_.begin(), inForce_.end(), inForce) != inForce_.end();
    ASSERT_TRUE(known || (readingStopped_ && inForce == kNothing));
    inForce_ = {inForce};
  }

  // Before something that leads to a save. What a stk system file states whose reading was stopped
  // is in force after the next save.
  void SettleForSave() {
    Settle();
    if (readingStopped_ && inForce_.front() == kNothing) {
      inForce_ = {testing::LiteralFile(Saved(Project()), {}, *document.FunctionTable()).stated};
      document.SaveSystemFile();
      Finish();
      Settle();
    }
    readingStopped_ = false;
  }

  void CheckFiles() {
    for (const std::string& path : host.files.Paths()) {
      ASSERT_FALSE(path.ends_with(".tmp")) << path;
      ASSERT_EQ(path.find(".bak"), std::string::npos) << "everything could be taken";
    }
  }

  void CheckWhenIdle() {
    ASSERT_TRUE(document.CanChangeAnalysis());
    ASSERT_FALSE(monitor.CanStop());
    ASSERT_EQ(host.files.OpenFiles(), 0);
    if (HasFunctions()) {
      Settle();
      testing::CheckDatabase(*document.FunctionTable());
      testing::CheckResults(*document.FunctionTable(), *document.RootList());
      if (saveExpected_) {
        const testing::LiteralFile saved(Saved(Project()), {}, *document.FunctionTable());
        ASSERT_TRUE(saved.stated == inForce_.front() && !saved.hasStray) << Saved(Project());
        Project().possible = inForce_;
      }
    }
    loading_ = false;
    CheckFiles();
  }

  std::mt19937 random_;
  ProjectModel projects_[2] = {ProjectModel("C:\\p"), ProjectModel("C:\\q")};
  size_t current_ = 0;
  std::vector<Statements> inForce_ = {kNothing};  // what may be in force in the open one
  bool loading_ = false;         // the reading of specifications is that of a user's file
  bool readingStopped_ = false;  // of the project's own specifications, or before it
  bool saveExpected_ = false;    // nothing has stopped what saves the last change
};

TEST_P(RandomCommands, LeaveAConsistentDocumentAndLoseNothing) {
  int checked = 0;
  for (int step = 0; step < kSteps && !HasFatalFailure(); ++step) {
    SCOPED_TRACE(step);
    Step();
    const bool idle = document.CanChangeAnalysis() && !document.Has(JobKind::kSpecWrite);
    if (idle || Below(8) == 0) {
      Finish();
      CheckWhenIdle();
      ++checked;
    }
  }
  EXPECT_GT(checked, kSteps / 10);
  Open();
  Finish();
  CheckWhenIdle();
}

INSTANTIATE_TEST_SUITE_P(, RandomCommands, ::testing::Range(1u, 11u));

}  // namespace
}  // namespace velkor
