#include <random>
#include <set>

#include "core/function_text.h"
#include "document_host.h"
#include "platform/limits.h"
#include "readers/gcc/build_folder.h"

namespace velkor {
namespace {

using testing::CallGraph;
using testing::DocumentHost;

constexpr const char* kInput = "/b/velkor.toml";
constexpr const char* kKept = "/b/velkor.psg";
constexpr const char* kLoaded = "/b/more.txt";
const std::string kHeading = "# Kept without effect: each names a function that was not found.\r\n";

class CloneStatements : public DocumentHost {
 protected:
  // A clone before its base, two of a base that is gone, and a recursive part of a base that is
  // not.
  CloneStatements() {
    host.files.AddDirectory("/b");
    host.files.AddDirectory("/b/build");
    host.files.Put(kInput, "input = \"build\"\n");
    host.files.Put("/b/build/a.ci",
                   CallGraph("a.c", {"main 16 step walk a.c:gone.constprop.0 a.c:gone.constprop.1",
                                     "a.c:step.isra.0 8 *", "step 24 a.c:step.isra.0 *",
                                     "a.c:gone.constprop.0 8 a.c:gone.constprop.0",
                                     "a.c:gone.constprop.1 12", "walk 8 a.c:walk.part.0",
                                     "a.c:walk.part.0 32 a.c:walk.part.0", "leaf 4"}));
    // Its own function of that name is gone.
    host.files.Put("/b/build/b.ci",
                   CallGraph("b.cc", {"b.cc:step.isra.1 8", "b.cc:_ZN1A1fEi.part.0.isra.0 8"}));
  }

  void OpenWith(const std::string& kept) {
    host.files.Put(kKept, kept);
    recorder.log.lines.clear();
    ASSERT_TRUE(document.OnOpenDocument(kInput));
    document.StartAnalysis();
    Finish();
  }
  void Load(const std::string& text) {
    host.files.Put(kLoaded, text);
    recorder.log.lines.clear();
    recorder.log.messages.clear();
    ASSERT_TRUE(document.LoadSpecFile(kLoaded));
    Finish();
  }
  StkFunction& Of(const std::string& name) {
    for (StkFunction* each : document.FunctionTable()->Functions()) {
      if (each->name == name) {
        return *each;
      }
    }
    ADD_FAILURE() << name;
    return *document.FunctionTable()->Functions().front();
  }
  void Adjust(const std::string& name, uint32_t margin, uint32_t depth = kNoDepth) {
    StkAdjustment adjustment;
    adjustment.margin = margin;
    adjustment.depth = depth;
    ASSERT_TRUE(document.AdjustFunction(Of(name), adjustment));
    Finish();
  }
  void Reset(const std::string& name) {
    ASSERT_TRUE(document.CancelAdjustment(Of(name)));
    Finish();
  }
  // "+4*3 leaf": what is in force.
  std::string Stated(const std::string& name) {
    const StkFunction& function = Of(name);
    std::string text = AdjustmentInfoText(function, AdjustmentStyle::kReport);
    std::set<std::string_view> callees;
    for (const StkFunction* callee : function.extraCallees) {
      callees.insert(callee->name);
    }
    for (const StkFunction* callee : document.FunctionTable()->DirectCallees(function)) {
      callees.insert(callee->name);
    }
    for (const std::string_view callee : callees) {
      text.append(" ").append(callee);
    }
    return text;
  }
  std::vector<std::string> AllStated() {
    std::vector<std::string> all;
    for (const StkFunction* each : document.FunctionTable()->Functions()) {
      all.push_back(std::string(each->name) + " " + Stated(std::string(each->name)));
    }
    return all;
  }
  std::string Kept() { return host.files.Get(kKept).value_or("none"); }
  bool IsBackedUp() { return host.files.Get(std::string(kKept) + ".bak").has_value(); }
};

TEST_F(CloneStatements, HaveWhatIsStatedOfTheirBase) {
  const std::string lines =
      "step, CALL=leaf\r\ngone, ADD=2, RECTIME=3\r\nwalk, RECTIME=4\r\nleaf, CALL=gone\r\n"
      "\"A::f(int)\", ADD=9\r\n";
  OpenWith(lines);
  EXPECT_FALSE(Logged("W94") || Logged("no effect")) << recorder.log.lines.back();
  EXPECT_EQ(Stated("step.isra.0"), " leaf");
  EXPECT_EQ(Stated("step.isra.1"), "");
  EXPECT_EQ(Stated("_ZN1A1fEi.part.0.isra.0"), "+9");
  EXPECT_EQ(Stated("gone.constprop.0"), "+2*3");
  EXPECT_EQ(Stated("gone.constprop.1"), "+2");
  EXPECT_EQ(Stated("walk"), "");
  EXPECT_EQ(Stated("walk.part.0"), "*4");
  EXPECT_EQ(Stated("leaf"), " gone.constprop.0 gone.constprop.1");

  Adjust("main", 1);
  EXPECT_EQ(Kept(), "main, ADD=1\r\n" + lines);
  EXPECT_FALSE(IsBackedUp());
  Adjust("step", 6);
  EXPECT_EQ(Stated("step.isra.0"), "+6");
  Reset("step");
  EXPECT_EQ(Stated("step.isra.0"), "");
  EXPECT_EQ(Kept(), "main, ADD=1\r\n" + lines.substr(lines.find("gone")));
  ASSERT_TRUE(document.CancelAllAdjustments());
  Finish();
  EXPECT_EQ(Kept(), "");
}

TEST_F(CloneStatements, HaveTheirOwnWhereALineNamesThem) {
  const std::string lines = "step.isra.0, ADD=2\r\nstep, ADD=1\r\ngone, ADD=7\r\n";
  OpenWith(lines);
  EXPECT_EQ(Stated("step.isra.0"), "+2");
  Adjust("step", 6);
  EXPECT_EQ(Stated("step.isra.0"), "+2");
  Reset("step.isra.0");
  Reset("gone.constprop.1");
  EXPECT_EQ(Kept(), "a.c#step.isra.0\r\nstep, ADD=6\r\ngone, ADD=7\r\na.c#gone.constprop.1\r\n");
  OpenWith(Kept());
  EXPECT_EQ(Stated("step.isra.0") + Stated("gone.constprop.1"), "");
  Reset("step");
  Reset("gone.constprop.0");
  EXPECT_EQ(Kept(), "");

  // A line that has no effect because every clone is named is not lost, nor are those names.
  const std::string named = "gone.constprop.0, ADD=1\r\ngone.constprop.1, ADD=2\r\n";
  OpenWith("gone, ADD=7\r\n" + named);
  EXPECT_EQ(document.InputNotes().back().rule, "stale-statement");
  host.files.Put(kKept, "gone, ADD=8\r\nmain, ADD=5\r\n" + named);
  Reset("gone.constprop.1");
  EXPECT_EQ(Kept(), "main, ADD=5\r\na.c#gone.constprop.0, ADD=1\r\na.c#gone.constprop.1\r\n" +
                        kHeading + "gone, ADD=8\r\n");
  EXPECT_FALSE(IsBackedUp());
  OpenWith("step.isra.0, CALL=nowhere\r\nstep, ADD=3\r\n");
  EXPECT_EQ(Stated("step.isra.0"), "");
  Adjust("main", 1);
  EXPECT_EQ(Kept(), "main, ADD=1\r\nstep, ADD=3\r\n" + kHeading + "step.isra.0, CALL=nowhere\r\n");
}

TEST_F(CloneStatements, FollowWhatALoadedFileStates) {
  OpenWith("step.isra.0, ADD=2\r\n");
  Load("step, ADD=9\ngone, ADD=4\n" + std::string(kMaxTextLines, '\n'));
  EXPECT_TRUE(Logged("W9406"));
  EXPECT_EQ(Kept(), "step, ADD=9\r\ngone, ADD=4\r\n");
  EXPECT_EQ(Stated("step.isra.0"), "+9");
  Load("gone, ADD=1\ngone, ADD=2\nleaf, RECTIME=2\nwalk, RECTIME=5\ngone.constprop.1\n");
  EXPECT_EQ(recorder.log.Warnings(),
            (std::vector<std::string>{"W9424 /b/more.txt:2", "W9417 /b/more.txt:3"}));
  EXPECT_EQ(Stated("gone.constprop.0") + Stated("gone.constprop.1"), "+1+4");
  EXPECT_EQ(Stated("walk.part.0"), "*5");

  // Of what the input states in place of it, nothing is kept.
  host.files.Put(kInput, "input = \"build\"\nload = \"l.txt\"\n");
  host.files.Put("/b/l.txt", "step, ADD=30\ngone.constprop.0\n");
  OpenWith("step, ADD=9\r\ngone, ADD=4\r\n");
  EXPECT_EQ(Stated("step.isra.0"), "+30");
  EXPECT_EQ(Stated("gone.constprop.0"), "+4");
  Adjust("main", 1);
  EXPECT_EQ(Kept(), "main, ADD=1\r\nstep, ADD=9\r\ngone, ADD=4\r\n");
}

TEST_F(CloneStatements, FollowWhatAnotherProgramStates) {
  OpenWith("step, ADD=1\r\nwalk, RECTIME=2\r\n");
  host.files.Put(kKept, "step, ADD=2\r\ngone, ADD=4, RECTIME=3\r\nwalk, RECTIME=2\r\n");
  Adjust("main", 1);
  EXPECT_EQ(Stated("step.isra.0"), "+2");
  EXPECT_EQ(Stated("gone.constprop.0") + Stated("gone.constprop.1"), "+4*3+4");
  EXPECT_EQ(Kept(), "main, ADD=1\r\nstep, ADD=2\r\ngone, ADD=4, RECTIME=3\r\nwalk, RECTIME=2\r\n");
  EXPECT_FALSE(IsBackedUp());

  // What was adjusted or cancelled here came last.
  host.files.Put(kKept, "step, ADD=3\r\n");
  Reset("step");
  EXPECT_EQ(Kept(), "");
  EXPECT_EQ(Stated("step.isra.0"), "");
  host.files.Put(kKept, "step, ADD=3\r\nstep.isra.0, ADD=4\r\ngone, ADD=5\r\n");
  Adjust("gone.constprop.0", 8);
  EXPECT_EQ(Kept(),
            "a.c#step.isra.0, ADD=4\r\nstep, ADD=3\r\na.c#gone.constprop.0, ADD=8\r\n"
            "gone, ADD=5\r\n");
  host.files.Put(kKept, "step, ADD=3\r\ngone, ADD=6\r\n");
  ASSERT_TRUE(document.CancelAllAdjustments());
  Finish();
  EXPECT_EQ(Kept(), "");
  EXPECT_FALSE(IsBackedUp());
}

// However it came to be, what is in force is what the file states.
TEST_F(CloneStatements, ReadBackAsTheyWere) {
  const std::vector<std::string> names = {
      "step", "step.isra.0", "gone.constprop.0", "gone.constprop.1", "walk", "walk.part.0"};
  const std::vector<std::string> lines = {"step, ADD=1",
                                          "step.isra.0",
                                          "step, CALL=leaf, CALL=a.c#step.isra.0",
                                          "gone, ADD=2, RECTIME=3",
                                          "gone.constprop.1, CALL=gone",
                                          "walk, RECTIME=4",
                                          "walk.part.0, ADD=5",
                                          "gone.constprop.0",
                                          "leaf, CALL=gone",
                                          "a.c#gone, ADD=6"};
  std::minstd_rand random(1);
  const auto any = [&](const std::vector<std::string>& list) {
    return list[random() % list.size()];
  };
  const auto file = [&] {
    std::set<std::string> functions;
    std::string text;
    for (int i = 0; i < 4; ++i) {
      const std::string line = any(lines);
      const std::string name = line.substr(0, line.find(','));
      text += functions.insert(name == "a.c#gone" ? "gone" : name).second ? line + "\r\n" : "";
    }
    return text;
  };
  OpenWith("");
  for (int i = 0; i < 300 && !HasFailure(); ++i) {
    const std::string name = any(names);
    SCOPED_TRACE(Kept() + "then " + std::to_string(i) + " " + name);
    switch (random() % 5) {
      case 0:
        Load(file());
        break;
      case 1:
        Adjust(name, 10 + static_cast<uint32_t>(i), name == "walk.part.0" ? 2 : kNoDepth);
        break;
      case 2:
        if (document.HasStatement(Of(name))) {
          Reset(name);
        }
        break;
      case 3:
        host.files.Put(kKept, file());
        Adjust("main", static_cast<uint32_t>(i));
        break;
      default:
        ASSERT_TRUE(document.CancelAllAdjustments());
        Finish();
    }
    const std::vector<std::string> before = AllStated();
    const std::string kept = Kept();
    OpenWith(kept);
    EXPECT_EQ(AllStated(), before) << kept;
    document.SaveSystemFile();
    Finish();
    EXPECT_EQ(Kept(), kept);
  }
}

}  // namespace
}  // namespace velkor
