#include <algorithm>
#include <chrono>
#include <map>
#include <random>
#include <thread>

#include "core/recompute.h"
#include "document_host.h"
#include "fuzz/invariants.h"

namespace velkor {
namespace {

using testing::DocumentHost;

constexpr uint32_t kFunctions = 24;
constexpr int kSteps = 1000;

// What the user has stated of one function.
struct Statement {
  uint32_t margin = 0;
  std::vector<std::string> callees;
  bool operator==(const Statement&) const = default;
};
using Statements = std::map<std::string, Statement>;  // by C name

std::string NameOf(uint32_t number) {
  return (number < 10 ? "f0" : "f") + std::to_string(number);
}

std::string LineOf(const std::string& name, const Statement& statement) {
  std::string line = name + ", ADD=" + std::to_string(statement.margin);
  for (const std::string& callee : statement.callees) {
    line += ", CALL=" + callee;
  }
  return line + "\r\n";
}

std::string FileOf(const Statements& statements) {
  std::string text;
  for (const auto& [name, statement] : statements) {
    text += LineOf(name, statement);
  }
  return text;
}

// What one project's user has stated, as far as it is certain: a load that was stopped has taken
// effect or has not.
struct ProjectModel {
  explicit ProjectModel(std::string where) : folder(std::move(where)) {}
  std::string Path() const { return folder + "\\app.prj"; }
  std::string SystemFile() const { return folder + "\\app.psg"; }

  std::string folder;
  std::vector<Statements> possible = {{}};
  std::vector<std::string> mustBeKept;  // stk system files whose reading was stopped
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

  // Calls lead to higher numbers only, so that what the user adds never makes a recursion.
  void PutFiles(const std::string& folder) {
    host.files.AddDirectory(folder);
    std::string project = "[ProjectManager]\nPath=" + folder + "\n[SrcFile]\n";
    for (uint32_t module = 0; module < 3; ++module) {
      std::vector<std::string> functions;
      for (uint32_t i = module; i < kFunctions; i += 3) {
        functions.push_back(NameOf(i) + " " + std::to_string(10 + i) +
                            (i + 5 < kFunctions ? " " + NameOf(i + 5) : " outside"));
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
    readingStopped_ |= document.IsAnalysing() || (document.IsReadingSpecifications() && !loading_);
    saveExpected_ = false;
    monitor.Stop();
  }

  Statement AnyStatement(uint32_t number) {
    Statement statement;
    statement.margin = 1 + Below(40);
    for (uint32_t callee = number + 1; callee < kFunctions && Below(3) == 0; ++callee) {
      if (callee != number + 5) {
        statement.callees.push_back(NameOf(callee));
      }
    }
    return statement;
  }

  void Open() {
    current_ = Below(2);
    readingStopped_ = false;
    loading_ = false;
    saveExpected_ = false;
    if (Below(3) != 0) {
      ASSERT_TRUE(document.OnOpenDocument(Project().Path()));
      document.StartAnalysis();
    } else if (!document.PathName().empty()) {
      current_ = document.PathName() == projects_[0].Path() ? 0 : 1;
      document.Recalculate();
    }
  }

  void Close() {
    readingStopped_ = false;
    loading_ = false;
    saveExpected_ = false;
    document.DeleteContents();
  }

  void Adjust() {
    if (!HasFunctions()) {
      return;
    }
    Settle();
    const uint32_t number = Below(kFunctions);
    const Statement statement = AnyStatement(number);
    StkAdjustment adjustment;
    adjustment.margin = statement.margin;
    StkFunctionList callees;
    for (const std::string& callee : statement.callees) {
      callees.push_back(Find(callee));
    }
    adjustment.SetCallees(callees, host.codePage);
    ASSERT_TRUE(document.AdjustFunction(*Find(NameOf(number)), adjustment));
    Project().possible.front()[NameOf(number)] = statement;
    saveExpected_ = true;
  }

  void Reset() {
    if (!HasFunctions()) {
      return;
    }
    Settle();
    if (Below(4) == 0) {
      ASSERT_TRUE(document.CancelAllAdjustments());
      Project().possible.front().clear();
    } else {
      const std::string name = NameOf(Below(kFunctions));
      ASSERT_TRUE(document.CancelAdjustment(*Find(name)));
      Project().possible.front().erase(name);
    }
    saveExpected_ = true;
  }

  void Load() {
    if (!HasFunctions()) {
      return;
    }
    Settle();
    Statements loaded = Project().possible.front();
    const bool withCallees = Below(2) == 0;
    std::string text;
    bool anyCallee = false;
    Statements stated;
    for (uint32_t count = 1 + Below(6); count > 0; --count) {
      const uint32_t number = Below(kFunctions);
      if (stated.contains(NameOf(number))) {
        continue;
      }
      Statement& statement = stated[NameOf(number)] = AnyStatement(number);
      if (!withCallees) {
        statement.callees.clear();
      }
      anyCallee |= !statement.callees.empty();
      text += LineOf(NameOf(number), statement);
      text += Below(3) == 0 ? "nobody, ADD=1\n" : "";
      text += std::string(Below(2) * 200, '\n');
    }
    for (const auto& [name, statement] : stated) {
      Statement& now = loaded[name];
      now.margin = statement.margin;
      if (anyCallee) {  // a file without any leaves those that there are
        now.callees = statement.callees;
      }
    }
    host.files.Put("C:\\u.txt", text);
    ASSERT_TRUE(document.LoadSpecFile("C:\\u.txt"));
    loading_ = true;
    Project().possible.push_back(loaded);
    saveExpected_ = true;
  }

  void Write() {
    using Format = StkChainReport::Format;
    if (document.FunctionTable() == nullptr || document.IsAnalysing() ||
        document.IsReadingSpecifications() || document.FunctionTable()->Count() == 0) {
      return;
    }
    switch (Below(3)) {
      case 0:
        document.SaveSystemFile();
        break;
      case 1:
        document.SaveSpecFile("C:\\mine.txt");
        break;
      default:
        document.SaveCallChains("C:\\report.txt", *Find(NameOf(Below(kFunctions))), Below(2) == 0,
                                Below(2) == 0 ? Format::kText : Format::kCsv);
        break;
    }
  }

  void Step() {
    switch (Below(12)) {
      case 0:
        Open();
        break;
      case 1:
      case 2:
      case 3:
        Adjust();
        break;
      case 4:
        Reset();
        break;
      case 5:
      case 6:
        Load();
        break;
      case 7:
        Write();
        break;
      case 8:
        Stop();
        break;
      case 9:
        if (Below(4) == 0) {
          Close();
        }
        break;
      default:
        Finish();
        break;
    }
    if (Below(2) == 0) {
      Pause();
    }
    if (Below(3) != 0) {
      recorder.queue.Drain();
    }
  }

  Statements InForce() {
    Statements statements;
    for (const auto& function : document.FunctionTable()->Functions()) {
      if (function->adjustment == nullptr) {
        continue;
      }
      Statement& statement = statements[std::string(function->name.substr(1))];
      statement.margin = function->adjustment->margin;
      for (const StkFunction* callee : function->extraCallees) {
        statement.callees.emplace_back(callee->name.substr(1));
      }
    }
    return statements;
  }

  // What is in force is what the user has stated. From here on it is certain.
  void Settle() {
    const Statements inForce = InForce();
    ProjectModel& project = Project();
    const bool known = std::find(project.possible.begin(), project.possible.end(), inForce) !=
                       project.possible.end();
    if (!known && readingStopped_ && inForce.empty()) {
      project.mustBeKept.push_back(host.files.Get(project.SystemFile()).value_or(""));
    } else {
      ASSERT_TRUE(known) << "in force:\n"
                         << FileOf(inForce) << "stated:\n"
                         << FileOf(project.possible.back());
    }
    project.possible = {inForce};
    readingStopped_ = false;
  }

  void CheckKept(ProjectModel& project) {
    std::vector<std::string> kept;
    for (const std::string& path : host.files.Paths()) {
      ASSERT_FALSE(path.ends_with(".tmp")) << path;
      if (path.starts_with(project.SystemFile() + ".bak")) {
        kept.push_back(*host.files.Get(path));
        host.files.Remove(path);  // there is room for so many only
      }
    }
    const std::string saved = host.files.Get(project.SystemFile()).value_or("");
    std::vector<std::string> still;
    for (const std::string& content : project.mustBeKept) {
      if (content == saved) {
        still.push_back(content);
      } else if (!content.empty()) {
        ASSERT_NE(std::find(kept.begin(), kept.end(), content), kept.end()) << content;
      }
    }
    project.mustBeKept = still;
  }

  void CheckWhenIdle() {
    ASSERT_TRUE(document.CanChangeAnalysis());
    ASSERT_FALSE(monitor.CanStop());
    ASSERT_EQ(host.files.OpenFiles(), 0);
    if (HasFunctions()) {
      Settle();
      testing::CheckDatabase(*document.FunctionTable());
      testing::CheckResults(*document.FunctionTable(), *document.RootList());
      const Statements& stated = Project().possible.front();
      ASSERT_EQ(document.FunctionTable()->AdjustedCount(), stated.size());
      if (saveExpected_) {
        ASSERT_EQ(SavedLines(), FileOf(stated));
      }
    }
    loading_ = false;
    for (ProjectModel& project : projects_) {
      CheckKept(project);
    }
  }

  // The stk system file's lines, sorted.
  std::string SavedLines() {
    std::istringstream file(host.files.Get(Project().SystemFile()).value_or("none"));
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
      lines.push_back(line + "\n");
    }
    std::sort(lines.begin(), lines.end());
    std::string text;
    for (const std::string& line : lines) {
      text += line;
    }
    return text;
  }

  std::mt19937 random_;
  ProjectModel projects_[2] = {ProjectModel("C:\\p"), ProjectModel("C:\\q")};
  size_t current_ = 0;
  bool loading_ = false;         // the reading of specifications is that of a user's file
  bool readingStopped_ = false;  // of the project's own specifications, or before it
  bool saveExpected_ = false;    // nothing has stopped what saves the last change
};

TEST_P(RandomCommands, LeaveAConsistentDocumentAndLoseNothing) {
  int checked = 0;
  for (int step = 0; step < kSteps && !HasFatalFailure(); ++step) {
    SCOPED_TRACE(step);
    Step();
    const bool idle = document.CanChangeAnalysis() && !document.IsWritingSpecifications();
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
