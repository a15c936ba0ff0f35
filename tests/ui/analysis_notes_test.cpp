#include <QLabel>
#include <QStatusBar>
#include <algorithm>

#include "main_window.h"
#include "support/module_text.h"

namespace velkor::ui {
namespace {

using testing::ModuleText;

// What the log says beside the lines of the jobs.
const std::string kNested =
    "Note: 2 functions of one recursion state a depth of 2 or more, which multiply: a, b. State 1 "
    "at all but one if its rounds are counted there.\n";
const std::string kOfRing =
    "2 of 3 top-level functions have no bound (0) or a total below it (2).\n";
const std::string kMissing =
    "Note: a is adjusted, but the adjustment leaves out what its bound needs: a recursion depth "
    "(RECTIME=).\n";
const std::string kOfUnsettledRing =
    "2 of 3 top-level functions have no bound (2) or a total below it (0).\n";

class NotesOfTheWindow : public MainWindow {
 protected:
  NotesOfTheWindow() : MainWindow({"main 10 a", "a 100 b", "b 20 a", "isr 5 b"}) {}

  // Everything from the end of the last file that was read on, and an empty log after it.
  std::string TakeEndOfLog() {
    const std::string log = Log();
    const std::string lastLine = messages.FormatMessageText(MessageKey::kReadingCompleted, {""});
    const size_t read = log.rfind(lastLine);
    app->Frame().GetLogView().Execute(Command::kClearLog);
    return read == std::string::npos ? log : log.substr(read + lastLine.size());
  }
};

TEST_F(NotesOfTheWindow, StandBelowTheLastLineOfEachAnalysis) {
  host.files.Put(kSystemFile, "a, RECTIME=2\nb, RECTIME=2\n");
  StartAndFinish();
  EXPECT_EQ(TakeEndOfLog(), "\n" + kNested + kOfRing);
  Choose(Command::kRecalculate);
  Finish();
  EXPECT_EQ(TakeEndOfLog(), "\n" + kNested + kOfRing);

  // Settled for the totals, but not for the bounds.
  host.files.Put("C:\\p\\spec.txt", "a, ADD=0\n");
  host.files.Put(kSystemFile, "");
  Choose(Command::kRecalculate);
  Finish();
  TakeEndOfLog();
  dialogs.answers = {"C:\\p\\spec.txt"};
  Choose(Command::kLoadSpecFile);
  Finish();
  const std::string loaded = TakeEndOfLog();
  EXPECT_TRUE(loaded.ends_with(kMissing + kOfUnsettledRing)) << loaded;

  host.files.Put("C:\\p\\a.asm", ModuleText("a.c", {"main 10"}));
  host.files.Put(kSystemFile, "");
  Choose(Command::kRecalculate);
  Finish();
  EXPECT_EQ(TakeEndOfLog(), "\n") << "nothing to say";
}

class StacksOfTheWindow : public MainWindow {
 protected:
  bool Shows(const QString& text) {
    const auto labels = app->Frame().statusBar()->findChildren<QLabel*>();
    return std::ranges::any_of(labels, [&](const QLabel* label) { return label->text() == text; });
  }
};

TEST_F(StacksOfTheWindow, StandBelowTheNotesAndInTheStatusBar) {
  host.files.Put("/w/b/a.ci",
                 "graph: { title: \"a.c\"\n"
                 "node: { title: \"main\" label: \"main\\na.c:1:5\\n30 bytes (static)\\n0 dynamic "
                 "objects\" }\nedge: { sourcename: \"main\" targetname: \"x\" }\n}\n");
  host.files.AddDirectory("/w/b");
  host.files.Put("/w/velkor.toml",
                 "input = \"b\"\nframe = 6\nswitch = 0\n[stack.main]\nentry = \"main\"\n"
                 "size = 40\n[interrupts]\nlevels = []\n");
  Start("/w/velkor.toml");
  Finish();
  EXPECT_TRUE(WaitUntil([&] { return Shows("Stacks: 0 of 1 in order"); }));
  EXPECT_NE(Log().find("Stack main needs >=30 of 40 bytes: no bound.\n"), std::string::npos)
      << Log();
  // What is adjusted counts at once.
  StkFunction* x = Document().FunctionTable()->FindBySpecName("", "x", true);
  ASSERT_NE(x, nullptr);
  StkAdjustment adjustment;
  adjustment.margin = 4;
  Document().AdjustFunction(*x, adjustment);
  Finish();
  EXPECT_TRUE(WaitUntil([&] { return Shows("Stacks: 1 of 1 in order"); }));
  Choose(Command::kRecalculate);
  Finish();
  const std::string enough = "Stack main needs 34 of 40 bytes: enough.\n";
  EXPECT_TRUE(WaitUntil([&] { return Log().find(enough) != std::string::npos; })) << Log();
}

}  // namespace
}  // namespace velkor::ui
