#include <QContextMenuEvent>
#include <QDropEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QStatusTipEvent>
#include <QToolBar>
#include <QUrl>
#include <chrono>
#include <thread>

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
  for (QWidget* view : {static_cast<QWidget*>(&app->Frame().ListView()),
                        static_cast<QWidget*>(&app->Frame().GetLogView())}) {
    Focus(*view);
    EXPECT_EQ(Enabled(), kWithoutProject);
  }
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
  Focus(app->Frame().ListView());
  EXPECT_EQ(Enabled(), "32771 32774 32775 32776 " + sorts + "32784 57664 57665 57670")
      << "nothing is selected in the list";
  app->Frame().ListView().setCurrentIndex(app->Frame().ListView().model()->index(1, 0));
  EXPECT_EQ(Enabled(), tree);
  Choose(Command::kAdjustStackSize);
  Focus(app->Frame().TreeView());
  EXPECT_EQ(Enabled(), tree);
  app->Frame().TreeView().setCurrentIndex(app->Frame().TreeView().model()->index(1, 0));
  Choose(Command::kAdjustStackSize);
  EXPECT_EQ(windows, (std::vector<std::string>{"adjust _f", "adjust _g"}));
}

TEST_F(MainWindow, SortCommandsReachTheListFromEveryView) {
  StartAndFinish();
  const auto checked = [this](Command command) {
    return app->Frame().Actions().Of(command).isChecked();
  };
  for (QWidget* view : {static_cast<QWidget*>(&app->Frame().TreeView()),
                        static_cast<QWidget*>(&app->Frame().GetLogView())}) {
    Focus(*view);
    Choose(Command::kSortByFile);
    EXPECT_TRUE(checked(Command::kSortByFile));
    Choose(Command::kSortByTotal);
    EXPECT_TRUE(checked(Command::kSortByTotal));
    EXPECT_FALSE(checked(Command::kSortByFile));
    Choose(Command::kSortByTotal);
    EXPECT_TRUE(checked(Command::kSortByTotal)) << "the same key again turns the direction only";
  }
}

TEST_F(MainWindow, AnAnalysisCanOnlyBeStoppedOrReplaced) {
  BlockAnalysis();
  Start(kProject);
  EXPECT_TRUE(app->Context().reporter.OpenedFromCommandLine());
  WaitUntilBlocked();
  const std::string analysing = "32771 32776 32777 57664 57665 57670";
  EXPECT_EQ(Enabled(), analysing);
  EXPECT_EQ(app->Frame().StatusBar().Position(), 2U);
  EXPECT_EQ(app->Frame().StatusBar().Range(), 2U);
  Release();
  Finish();
  EXPECT_FALSE(IsEnabled(Command::kStop));
  EXPECT_EQ(app->Frame().StatusBar().Position(), 0U);
  EXPECT_TRUE(IsEnabled(Command::kLoadSpecFile));
}

TEST_F(MainWindow, StopLeavesAProjectWithoutFunctions) {
  BlockAnalysis();
  Start(kProject);
  WaitUntilBlocked();
  std::thread later([this] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    Release();
  });
  Choose(Command::kStop);
  later.join();
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

TEST_F(MainWindow, RecalculatingBringsAdjustmentsBack) {
  StartAndFinish();
  adjustAnswer.accepted = true;
  adjustAnswer.adjustment.emplace().margin = 7;
  Choose(Command::kAdjustStackSize);
  Finish();
  EXPECT_EQ(Function("main").totalStackSize, 37U);
  Choose(Command::kRecalculate);
  Finish();
  EXPECT_EQ(Function("main").totalStackSize, 37U);
  EXPECT_TRUE(IsEnabled(Command::kResetFunction));
  EXPECT_TRUE(IsEnabled(Command::kResetAllFunctions));

  adjustAnswer.accepted = false;
  Choose(Command::kAdjustStackSize);
  EXPECT_EQ(Function("main").totalStackSize, 37U);
  adjustAnswer = {true, std::nullopt};
  Choose(Command::kAdjustStackSize);
  Finish();
  EXPECT_EQ(Function("main").totalStackSize, 30U);
  EXPECT_FALSE(IsEnabled(Command::kResetFunction));
  EXPECT_EQ(boxes.boxes.size(), 0U);
}

// While a job changes the functions, the list must not look at them.
TEST_F(MainWindow, ASelectionMadeDuringAReadingReachesTheListAfterIt) {
  StartAndFinish();
  host.files.Put("C:\\p\\spec.txt", "main, ADD=5\n");
  host.files.OnRead("C:\\p\\spec.txt", [this] {
    reached.Set();
    released.Wait();
  });
  dialogs.answers = {"C:\\p\\spec.txt"};
  Choose(Command::kLoadSpecFile);
  WaitUntilBlocked();
  const auto first = [this] {
    return app->Frame().ListView().model()->index(0, 0).data().toString().toStdString();
  };
  app->Frame().TreeView().setCurrentIndex(app->Frame().TreeView().model()->index(1, 0));
  HandleEvents();
  EXPECT_EQ(first(), "main");
  EXPECT_FALSE(IsEnabled(Command::kAdjustStackSize));
  std::thread later([this] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    Release();
  });
  Choose(Command::kStop);
  later.join();
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
}

TEST_F(MainWindow, FilesAreLoadedSavedAndReported) {
  StartAndFinish();
  host.files.Put("C:\\p\\spec.txt", "main, ADD=5\n");
  dialogs.answers = {"C:\\p\\spec.txt"};
  Choose(Command::kLoadSpecFile);
  Finish();
  EXPECT_EQ(Function("main").totalStackSize, 35U);
  EXPECT_NE(host.files.Get(kSystemFile)->find("main"), std::string::npos);
  EXPECT_NE(Log().find("C:\\p\\spec.txt Reading completed.\n"), std::string::npos);

  dialogs.answers = {"C:\\p\\out.txt"};
  Choose(Command::kSaveSpecFile);
  Finish();
  EXPECT_NE(host.files.Get("C:\\p\\out.txt")->find("[x]"), std::string::npos);

  dialogs.answers = {"C:\\p\\chain.CSV", "C:\\p\\all.csv.txt"};
  Choose(Command::kSaveMaximumChain);
  Finish();
  Choose(Command::kSaveAllChains);
  Finish();
  EXPECT_NE(host.files.Get("C:\\p\\chain.CSV")->find("Function,Total Stack Size"),
            std::string::npos);
  EXPECT_FALSE(host.files.Get("C:\\p\\all.csv.txt")->starts_with("Function,"));
  EXPECT_EQ(dialogs.asked, (std::vector<std::string>{"load", "save", "report", "report"}));

  for (const Command command : {Command::kLoadSpecFile, Command::kSaveSpecFile}) {
    Choose(command);
    EXPECT_FALSE(HasJobs()) << "cancelled";
  }
  Choose(Command::kFunctionLists);
  EXPECT_EQ(windows, std::vector<std::string>{"lists"});
}

TEST_F(MainWindow, ClosingStopsTheAnalysis) {
  BlockAnalysis();
  Start(kProject);
  WaitUntilBlocked();
  Release();
  Choose(Command::kExit);
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
  for (const int width : {700, 1000, 640}) {
    frame.resize(width, 500);
    HandleEvents();
    EXPECT_EQ(bar->width(), 120);
    EXPECT_GE(bar->mapTo(&frame, QPoint(120, 0)).x(), frame.width() - 40);
  }
  QStatusTipEvent tip(frame.Actions().Of(Command::kStop).statusTip());
  QCoreApplication::sendEvent(&frame, &tip);
  EXPECT_EQ(frame.StatusBar().currentMessage(), "Stop the currently running job.");
  EXPECT_TRUE(bar->isVisible());
  EXPECT_EQ(frame.Actions().Of(Command::kSaveAllChains).statusTip(),
            "Save all the chains starting with the selected function.");
}

TEST_F(MainWindow, ContextMenusShowTheirPrompts) {
  StartAndFinish();
  const auto prompt = [this](QWidget& view, const std::vector<int>& way) {
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(5, 5), QPoint(5, 5));
    QApplication::sendEvent(&view, &event);
    QMenu* menu = view.findChild<QMenu*>(QString(), Qt::FindDirectChildrenOnly);
    QMenu* shown = menu;
    for (const int item : way) {
      QAction* action = shown->actions()[item];
      shown->setActiveAction(action);
      shown = action->menu() ? action->menu() : shown;
    }
    std::string message = app->Frame().StatusBar().currentMessage().toStdString();
    menu->close();
    EXPECT_EQ(app->Frame().StatusBar().currentMessage(), "");
    delete menu;
    return message;
  };
  app->Frame().ListView().setCurrentIndex(app->Frame().ListView().model()->index(1, 0));
  EXPECT_EQ(prompt(app->Frame().GetLogView(), {1}), "Clear the errors that are displaying.");
  EXPECT_EQ(prompt(app->Frame().ListView(), {0}), "Open the \"Adjust Stack Size\" dialog.");
  EXPECT_EQ(prompt(app->Frame().ListView(), {1, 2}), "Sort the list by total stack size.");
}

TEST_F(MainWindow, ProgressOfAnyRange) {
  CStkStatusBar& bar = app->Frame().StatusBar();
  const auto* shown = bar.findChild<QProgressBar*>();
  EXPECT_EQ(bar.Range(), 100U);
  bar.SetRange(uint64_t{1} << 40);
  bar.SetPosition(uint64_t{1} << 39);
  EXPECT_EQ(shown->value() * 2, shown->maximum());
  bar.SetPosition(0);
  bar.SetRange(2);
  bar.StepIt();
  EXPECT_EQ(shown->value() * 2, shown->maximum());
  bar.StepIt();
  bar.StepIt();
  EXPECT_EQ(shown->value(), shown->maximum());
  bar.SetPosition(0);
  bar.SetRange(0);
  EXPECT_NE(shown->maximum(), 0) << "a range of nothing must not look busy";
  EXPECT_EQ(shown->value(), 0);
}

TEST_F(MainWindow, TheViewsShareTheWindowAsPlanned) {
  Start(std::nullopt);
  CMainFrame& frame = app->Frame();
  EXPECT_NEAR(frame.TreeView().width(), 200, 5);
  EXPECT_NEAR(frame.ListView().height(), std::min(300, frame.height() / 2), 60);
  EXPECT_GE(frame.GetLogView().height(), 50);
  const int list = frame.ListView().height();
  frame.resize(frame.width() + 100, frame.height() + 80);
  HandleEvents();
  EXPECT_NEAR(frame.TreeView().width(), 200, 5);
  EXPECT_NEAR(frame.ListView().height(), list, 3);
}

}  // namespace
}  // namespace velkor
