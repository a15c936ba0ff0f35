#include <QProgressBar>

#include "main_window.h"

namespace velkor::ui {
namespace {

TEST_F(MainWindow, AnAnalysisCanOnlyBeStoppedOrReplaced) {
  BlockAt(kModuleB);
  Start(kProject);
  EXPECT_TRUE(app->Context().reporter.OpenedFromCommandLine());
  WaitUntilBlocked();
  EXPECT_FALSE(IsEnabled(Command::kAdjustStackSize) || IsEnabled(Command::kLoadSpecFile));
  const auto* const progress = app->Frame().findChild<QProgressBar*>();
  EXPECT_EQ(progress->value(), progress->maximum()) << "of two modules two";
  ChooseWhileBlocked(Command::kStop);
  EXPECT_FALSE(HasJobs());
  HandleEvents();
  EXPECT_FALSE(IsEnabled(Command::kStop) || IsEnabled(Command::kAdjustStackSize));
  EXPECT_TRUE(IsEnabled(Command::kRecalculate));
  EXPECT_EQ(progress->value(), 0);
}

TEST_F(MainWindow, OpeningClearsTheMarkOfTheCommandLine) {
  StartAndFinish();
  Choose(Command::kOpenProject);
  EXPECT_FALSE(app->Context().reporter.OpenedFromCommandLine());
  EXPECT_EQ(app->Frame().windowTitle(), "app.prj - velkor") << "cancelled";
  EXPECT_EQ(Document().FunctionTable()->Count(), 4U);

  dialogs.answers = {"C:\\p\\none.prj"};
  Choose(Command::kOpenProject);
  EXPECT_EQ(BoxTexts(), "E9300 Cannot find project file (C:\\p\\none.prj).|");
  EXPECT_EQ(app->Frame().windowTitle(), "Untitled - velkor");
  EXPECT_FALSE(IsEnabled(Command::kRecalculate));
  EXPECT_EQ(closedCount, 0);

  dialogs.answers = {kProject};
  Choose(Command::kOpenProject);
  Finish();
  EXPECT_EQ(app->Frame().windowTitle(), "app.prj - velkor");
  EXPECT_TRUE(IsEnabled(Command::kAdjustStackSize));

  host.files.AddDirectory("/build");
  host.files.Put("/build/a.ci",
                 "graph: { title: \"a.c\"\n"
                 "node: { title: \"f\" label: \"f\\na.c:1:5\\n8 bytes (static)\" }\n}\n");
  dialogs.answers = {"/build"};
  Choose(Command::kOpenFolder);
  Finish();
  EXPECT_EQ(app->Frame().windowTitle(), "build - velkor");
  EXPECT_EQ(Document().FunctionTable()->Count(), 1U);
}

TEST_F(MainWindow, ABadProjectOnTheCommandLineEndsTheStart) {
  host.files.Put("C:\\p\\bad.prj", "[Nothing]\n");
  EXPECT_FALSE(app->Start("C:\\p\\bad.prj"));
  EXPECT_EQ(BoxTexts(), "E9302 Illegal format in project file (C:\\p\\bad.prj).\nCheck the file.|");
  EXPECT_FALSE(app->Frame().isVisible());
}

// While a job changes the functions, the list must not look at them.
TEST_F(MainWindow, ASelectionMadeDuringAReadingReachesTheListAfterIt) {
  StartAndFinish();
  host.files.Put("C:\\p\\spec.txt", "main, ADD=5\n");
  BlockAt("C:\\p\\spec.txt");
  dialogs.answers = {"C:\\p\\spec.txt"};
  Choose(Command::kLoadSpecFile);
  WaitUntilBlocked();
  const auto first = [this] { return List().model()->index(0, 0).data().toString().toStdString(); };
  Tree().setCurrentIndex(Tree().model()->index(1, 0));
  HandleEvents();
  EXPECT_EQ(first(), "main");
  EXPECT_FALSE(IsEnabled(Command::kAdjustStackSize));
  ChooseWhileBlocked(Command::kStop);
  EXPECT_TRUE(WaitUntil([&first] { return first() == "g"; })) << first();
  EXPECT_EQ(Document().CurrentSelection(), &Function("g"));
  EXPECT_TRUE(IsEnabled(Command::kAdjustStackSize));
}

TEST_F(MainWindow, ResettingAsksFirst) {
  StartAndFinish();
  adjustAnswer.accepted = true;
  adjustAnswer.adjustment.emplace().margin = 7;
  for (const auto& [command, question] :
       {std::pair(Command::kResetFunction,
                  "I9502 Do you want to cancel adjustments to the selected function (main) ?|"),
        std::pair(Command::kResetAllFunctions,
                  "I9503 Do you want to cancel adjustments to all the functions?|")}) {
    Choose(Command::kAdjustStackSize);
    Finish();
    for (const BoxAnswer answer : {BoxAnswer::kNo, BoxAnswer::kYes}) {
      boxes.boxes.clear();
      boxes.answerWith = [answer](const auto&) { return answer; };
      Choose(command);
      Finish();
      EXPECT_EQ(BoxTexts(), question);
      EXPECT_EQ(Function("main").totalStackSize, answer == BoxAnswer::kNo ? 37U : 30U);
    }
    EXPECT_FALSE(IsEnabled(command));
  }
  // The dialog takes adjustments back as well.
  Choose(Command::kAdjustStackSize);
  Finish();
  adjustAnswer = {false, std::nullopt};
  Choose(Command::kAdjustStackSize);
  EXPECT_EQ(Function("main").totalStackSize, 37U) << "cancelled";
  adjustAnswer.accepted = true;
  Choose(Command::kAdjustStackSize);
  EXPECT_EQ(Function("main").totalStackSize, 30U);
}

TEST_F(MainWindow, ClosingKeepsAdjustmentsAndSaysWhenItCannot) {
  StartAndFinish();
  adjustAnswer.accepted = true;
  adjustAnswer.adjustment.emplace().margin = 7;
  Choose(Command::kAdjustStackSize);
  host.files.Refuse(kSystemFile);
  app->Frame().close();
  const bool saved = host.files.Get(kSystemFile).value_or("").find("main") != std::string::npos;
  const bool told = BoxTexts().find(kSystemFile) != std::string::npos;
  EXPECT_TRUE(saved || told) << BoxTexts();
}

TEST_F(MainWindow, TheAnalysisIsSavedAsAPage) {
  StartAndFinish();
  dialogs.answers = {std::nullopt, kProject, "C:\\p\\page.html"};
  Choose(Command::kSavePage);
  EXPECT_FALSE(host.files.Get("C:\\p\\page.html"));
  const std::string project = host.files.Get(kProject).value();
  Choose(Command::kSavePage);
  HandleEvents();
  EXPECT_EQ(host.files.Get(kProject), project) << "never over what it is made from";
  Choose(Command::kSavePage);
  HandleEvents();
  const std::string page = host.files.Get("C:\\p\\page.html").value_or("");
  EXPECT_TRUE(page.starts_with("<!DOCTYPE html>") && page.ends_with("</html>\n")) << page;
  EXPECT_NE(page.find("The largest number is that of <bdi>main</bdi>: at least 30 bytes"),
            std::string::npos)
      << page;
}

}  // namespace
}  // namespace velkor::ui
