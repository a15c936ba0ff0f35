#include <QDropEvent>
#include <QMenuBar>
#include <QMimeData>
#include <QStatusTipEvent>
#include <QToolBar>
#include <QUrl>

#include "main_window.h"

namespace velkor {
namespace {

using testing::MainWindow;

constexpr const char* kWithoutProject = "32771 57664 57665 57670";

std::string Menu(const QList<QAction*>& actions, const std::string& indent = "") {
  std::string text;
  for (const QAction* action : actions) {
    text += indent + (action->isSeparator() ? "-" : action->text().toStdString()) + "\n";
    if (action->menu()) {
      text += Menu(action->menu()->actions(), indent + "  ");
    }
  }
  return text;
}

TEST_F(MainWindow, MenusToolbarAndKeys) {
  EXPECT_EQ(Menu(app->Frame().menuBar()->actions()),
            "&File\n"
            "  &Open Project...\n"
            "  -\n"
            "  Save Call Chain with &Maximum Stack...\n"
            "  &Save All Call Chains...\n"
            "  -\n"
            "  Load Stack Size Specificatio&n File...\n"
            "  S&ave Stack Size Specification File...\n"
            "  -\n"
            "  &Exit velkor\n"
            "&View\n"
            "  &Recalculate Stack Size\n"
            "  &Stop\n"
            "  Sort &List by\n"
            "    Function &Name\n"
            "    &Icon Type\n"
            "    &Stack Size\n"
            "    F&rame Size\n"
            "    &Additional Margin\n"
            "    &File Name\n"
            "&Option\n"
            "  Stack Size &Unknown / Adjusted Function Lists...\n"
            "  Adjust &Stack Size...\n"
            "  &Reset Function\n"
            "  Reset &All Functions\n"
            "&Help\n"
            "  velkor &Help\n"
            "  -\n"
            "  &About velkor...\n");
  std::string tips;
  for (const QAction* action : app->Frame().findChild<QToolBar*>()->actions()) {
    tips += (action->isSeparator() ? "-" : action->toolTip().toStdString()) + "\n";
    EXPECT_TRUE(action->isSeparator() || !action->icon().isNull());
  }
  EXPECT_EQ(tips,
            "Save Call Chain with Maximum Stack\n-\nRecalculate Stack Size\n-\nStop\n-\n"
            "Adjust Stack Size\n-\nOpen Help\n");
  const auto keys = [this](Command command) {
    return QKeySequence::listToString(app->Frame().Actions().Of(command).shortcuts()).toStdString();
  };
  EXPECT_EQ(keys(Command::kCopy), "Ctrl+C; Ctrl+Ins");
  EXPECT_EQ(keys(Command::kOpenProject), "Ctrl+O");
  EXPECT_EQ(keys(Command::kHelp), "F1");
  EXPECT_EQ(keys(Command::kStop), "");
}

TEST_F(MainWindow, WithoutAProjectOnlyTheProgramsOwnCommandsWork) {
  Start(std::nullopt);
  EXPECT_EQ(app->Frame().windowTitle(), "Untitled - velkor");
  EXPECT_EQ(Enabled(), kWithoutProject);
  Focus(List());
  EXPECT_EQ(Enabled(), kWithoutProject);
  Choose(Command::kAbout);
  Choose(Command::kHelp);
  EXPECT_EQ(windows, (std::vector<std::string>{"about", "help 1"}));
}

TEST_F(MainWindow, TheActiveViewDecidesItsCommands) {
  StartAndFinish();
  EXPECT_EQ(app->Frame().windowTitle(), "app.prj - velkor");
  const std::string sorts = "32778 32779 32780 32781 32782 32783 ";
  const std::string tree =
      "32771 32772 32773 32774 32775 32776 " + sorts + "32784 32785 57664 57665 57670";
  EXPECT_EQ(Enabled(), tree);
  Focus(app->Frame().GetLogView());
  EXPECT_EQ(Enabled(), "32771 32774 32775 32776 " + sorts + "32784 57633 57664 57665 57670");
  Focus(List());
  EXPECT_EQ(Enabled(), "32771 32774 32775 32776 " + sorts + "32784 57664 57665 57670")
      << "nothing is selected in the list";
  List().setCurrentIndex(List().model()->index(1, 0));
  EXPECT_EQ(Enabled(), tree);
  Choose(Command::kAdjustStackSize);
  Focus(Tree());
  EXPECT_EQ(Enabled(), tree);
  Tree().setCurrentIndex(Tree().model()->index(1, 0));
  Choose(Command::kAdjustStackSize);
  EXPECT_EQ(windows, (std::vector<std::string>{"adjust _f", "adjust _g"}));
}

TEST_F(MainWindow, AnAnalysisCanOnlyBeStoppedOrReplaced) {
  BlockAt(kModuleB);
  Start(kProject);
  EXPECT_TRUE(app->Context().reporter.OpenedFromCommandLine());
  WaitUntilBlocked();
  EXPECT_EQ(Enabled(), "32771 32776 32777 57664 57665 57670");
  EXPECT_EQ(app->Frame().StatusBar().Position(), 2U);
  EXPECT_EQ(app->Frame().StatusBar().Range(), 2U);
  ChooseWhileBlocked(Command::kStop);
  EXPECT_FALSE(HasJobs());
  HandleEvents();
  EXPECT_EQ(Enabled(), "32771 32776 57664 57665 57670");
  EXPECT_EQ(app->Frame().StatusBar().Position(), 0U);
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
  EXPECT_EQ(Enabled(), kWithoutProject);
  EXPECT_EQ(closedCount, 0);

  dialogs.answers = {kProject};
  Choose(Command::kOpenProject);
  Finish();
  EXPECT_EQ(app->Frame().windowTitle(), "app.prj - velkor");
  EXPECT_TRUE(IsEnabled(Command::kAdjustStackSize));
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

TEST_F(MainWindow, ClosingStopsTheAnalysis) {
  BlockAt(kModuleB);
  Start(kProject);
  WaitUntilBlocked();
  ChooseWhileBlocked(Command::kExit);
  EXPECT_FALSE(HasJobs());
  EXPECT_EQ(closedCount, 1);
  EXPECT_FALSE(app->Frame().isVisible());
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

TEST_F(MainWindow, ADroppedProjectIsOpened) {
  Start(std::nullopt);
  host.files.Put("/p/App.PRJ", *host.files.Get(kProject));
  const auto drop = [this](const QList<QUrl>& urls) {
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QCoreApplication::sendEvent(&app->Frame(), &enter);
    QDropEvent event(QPointF(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&app->Frame(), &event);
    HandleEvents();
    return enter.isAccepted();
  };
  const QUrl project = QUrl::fromLocalFile("/p/App.PRJ");
  EXPECT_FALSE(drop({QUrl::fromLocalFile("/p/app.txt")}));
  EXPECT_FALSE(drop({project, project}));
  {
    const PostedMessages::Hold box(app->Posted());
    EXPECT_FALSE(drop({project})) << "a box is open";
  }
  EXPECT_EQ(app->Frame().windowTitle(), "Untitled - velkor");
  EXPECT_TRUE(drop({project}));
  Finish();
  EXPECT_EQ(app->Frame().windowTitle(), "App.PRJ - velkor");
  EXPECT_EQ(Document().FunctionTable()->Count(), 4U);
  for (const QAbstractScrollArea* view : app->Frame().findChildren<QAbstractScrollArea*>()) {
    EXPECT_FALSE(view->acceptDrops() || view->viewport()->acceptDrops())
        << "a view would keep the drop for itself";
  }
}

TEST_F(MainWindow, PromptsAndProgressShareTheStatusBar) {
  Start(std::nullopt);
  CMainFrame& frame = app->Frame();
  const auto* bar = frame.StatusBar().findChild<QProgressBar*>();
  EXPECT_EQ(bar->width(), 120);
  EXPECT_GE(bar->mapTo(&frame, QPoint(120, 0)).x(), frame.width() - 40);
  QStatusTipEvent tip(frame.Actions().Of(Command::kStop).statusTip());
  QCoreApplication::sendEvent(&frame, &tip);
  EXPECT_EQ(frame.StatusBar().currentMessage(), "Stop the currently running job.");
  EXPECT_TRUE(bar->isVisible());
  EXPECT_EQ(frame.Actions().Of(Command::kSaveAllChains).statusTip(),
            "Save all the chains starting with the selected function.");
}

TEST_F(MainWindow, ProgressOfAnyRange) {
  CStkStatusBar& bar = app->Frame().StatusBar();
  const auto* shown = bar.findChild<QProgressBar*>();
  bar.SetRange(uint64_t{1} << 40);
  bar.SetPosition(uint64_t{1} << 39);
  EXPECT_EQ(shown->value() * 2, shown->maximum());
  bar.SetRange(2);
  for (int step = 0; step < 3; ++step) {
    bar.StepIt();
  }
  EXPECT_EQ(shown->value(), shown->maximum());
  bar.SetPosition(0);
  bar.SetRange(0);
  EXPECT_NE(shown->maximum(), 0) << "a range of nothing must not look busy";
  EXPECT_EQ(shown->value(), 0);
}

}  // namespace
}  // namespace velkor
