// window_bench FOLDER [FUNCTIONS]: how long the window stands still at most while it shows a large
// project, which is written into the folder unless one is there. Needs no display.

#include <QApplication>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QMenu>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>

#include "large_project.h"
#include "platform/local_machine.h"
#include "ui/application.h"
#include "ui/dialogs/adjust_dialog.h"
#include "ui/dialogs/function_lists_dialog.h"

namespace velkor::ui {
namespace {

// Processor time of this thread. Other programs on the machine hardly change it.
qint64 ThreadNanoseconds() {
  timespec time = {};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return qint64{time.tv_sec} * 1000000000 + time.tv_nsec;
}

// Beats every millisecond when the event loop runs; how long it once did not, and how much of such
// a time was work at most.
class Heartbeat {
 public:
  Heartbeat() {
    beat_.setTimerType(Qt::PreciseTimer);
    beat_.setInterval(1);
    QObject::connect(&beat_, &QTimer::timeout, [this] { Beat(); });
    last_.start();
    beat_.start();
  }
  void Reset() {
    longest_ = 0;
    longestWork_ = 0;
    last_.start();
    lastWork_ = ThreadNanoseconds();
  }
  double LongestMilliseconds() {
    Beat();
    return static_cast<double>(longest_) / 1e6;
  }
  double LongestWorkMilliseconds() const { return static_cast<double>(longestWork_) / 1e6; }

 private:
  void Beat() {
    longest_ = std::max(longest_, last_.nsecsElapsed());
    last_.start();
    const qint64 work = ThreadNanoseconds();
    longestWork_ = std::max(longestWork_, work - lastWork_);
    lastWork_ = work;
  }

  QTimer beat_;
  QElapsedTimer last_;
  qint64 longest_ = 0;
  qint64 lastWork_ = 0;
  qint64 longestWork_ = 0;
};

class NoBoxes : public MessageBoxes {
 public:
  BoxAnswer Show(const StkMessage& message, BoxIcon, BoxButtons) override {
    std::printf("box: %.*s\n", static_cast<int>(message.text.size()), message.text.data());
    return BoxAnswer::kOk;
  }
};

class WindowBench {
 public:
  explicit WindowBench(LocalMachine& machine)
      : messages_(WindowMessages(machine.GetHost().codePage, Language::kEnglish)),
        application_(
            {.host = machine.GetHost(),
             .messages = messages_,
             .boxes = boxes_,
             .fileDialogs = fileDialogs_,
             .posted = posted_,
             .version = {},
             .language = Language::kEnglish,
             .adjust = [this](UiContext& context, StkFunction& function,
                              QWidget* parent) { return Adjust(context, function, parent); },
             .functionLists =
                 [this](UiContext& context, FrameOperations& frame, QWidget* parent) {
                   FunctionListsDialog dialog(
                       context, frame, [](int) {}, parent);
                   Show(dialog);
                 },
             .about = [](UiContext&, const VersionTexts&, QWidget*) {},
             .showHelp = [](int) {},
             .closed = [] {},
             .settings = settings_,
             .legend = [](UiContext&, QWidget*) {},
             .options = [](UiContext&, QWidget*) { return false; },
             .openSource = [](UiContext&, const std::string&, uint32_t) { return false; },
             .readsOtherwise = [](UiContext&, const std::string&) { return false; },
             .staysOpen = [] {}}) {}

  void Run(const std::string& project) {
    std::printf("%-40s %14s %14s %10s\n", "step", "stands still", "of it work", "takes");
    Measure("open and analyse", [&] {
      application_.Start(project);
      Finish();
    });
    Measure("summary and picture", [&] { AwaitAnswer(); });
    ShowAnswer();
    ShowViews();
    FindFunctions();
    Adjustments();
    WhileAnalysing();
  }

 private:
  void Measure(const char* step, const std::function<void()>& action) {
    Idle();
    heart_.Reset();
    QElapsedTimer time;
    time.start();
    action();
    Idle();
    const double longest = heart_.LongestMilliseconds();
    std::printf("%-40s %11.1f ms %11.1f ms %7lld ms\n", step, longest,
                heart_.LongestWorkMilliseconds(), static_cast<long long>(time.elapsed()));
    std::fflush(stdout);
  }
  static void Idle() { QTest::qWait(50); }
  void Finish() {
    const CStkDoc& document = application_.Context().document;
    while (document.HasJobs()) {
      QTest::qWait(5);
    }
  }
  void Choose(Command command) { application_.Frame().Actions().Of(command).trigger(); }
  void Show(QDialog& dialog) {
    dialog.setModal(true);
    dialog.show();
    QTest::qWait(kDialogMilliseconds);
  }
  AdjustAnswer Adjust(UiContext& context, StkFunction& function, QWidget* parent) {
    if (shows_) {
      AdjustStackSizeDialog dialog(
          context, function, [](int) {}, parent);
      Show(dialog);
      return {};
    }
    StkAdjustment adjustment;
    adjustment.margin = ++margin_;
    if (callee_) {
      adjustment.SetCallees({callee_}, context.host.codePage);
    }
    return {true, adjustment};
  }

  void AwaitAnswer() {
    while (!application_.Frame().Answers().Picture().HasPicture()) {
      QTest::qWait(5);
    }
  }

  void ShowAnswer() {
    PictureView& picture = application_.Frame().Answers().Picture();
    Measure("open the maximum chain", [&] { Choose(Command::kOpenMaximumChain); });
    Measure("order the tree by size", [&] { Choose(Command::kTreeBySize); });
    Measure("order the tree by module", [&] { Choose(Command::kTreeByModule); });
    Measure("show the picture", [&] { Choose(Command::kShowPicture); });
    Measure("zoom into the picture", [&] {
      for (int i = 0; i < 10; ++i) {
        QTest::keyClick(&picture, Qt::Key_Plus);
        QTest::qWait(5);
      }
    });
    Measure("go down the picture", [&] { QTest::keyClick(&picture, Qt::Key_End); });
    Choose(Command::kShowSummary);
  }

  void ShowViews() {
    CStkTreeView& tree = application_.Frame().TreeView();
    tree.setFocus();
    Measure("expand a node with many callees", [&] { tree.expand(tree.model()->index(0, 0)); });
    Measure("select it, filling the list", [&] {
      tree.setCurrentIndex(tree.model()->index(1, 0));
      tree.setCurrentIndex(tree.model()->index(0, 0));
    });
    static constexpr std::pair<Command, const char*> kSorts[] = {
        {Command::kSortByName, "sort the list by name"},
        {Command::kSortByTotal, "sort the list by total"},
        {Command::kSortByFrame, "sort the list by frame size"},
        {Command::kSortByMargin, "sort the list by margin"},
        {Command::kSortByFile, "sort the list by file"},
        {Command::kSortByIcon, "sort the list by icon"}};
    for (const auto& [command, step] : kSorts) {
      Measure(step, [&, command = command] { Choose(command); });
    }
    Measure("type ahead in the tree", [&] { QTest::keyClicks(&tree, "driver_1000_"); });
    tree.setCurrentIndex(tree.model()->index(0, 0));
  }

  void Await(AllFunctionsView& all) {
    do {
      QTest::qWait(5);
    } while (all.IsWorking());
  }
  void FindFunctions() {
    AllFunctionsView& all = application_.Frame().Panels().AllFunctions();
    QTableView& table = all.Table();
    Measure("find: all functions for the first time", [&] {
      Choose(Command::kFind);
      Await(all);
    });
    Measure("find: a name, letter by letter", [&] {
      for (const char letter : std::string("driver_77_")) {
        QTest::keyClick(&all.Text(), letter);
        QTest::qWait(5);
      }
      Await(all);
    });
    Measure("find: the way to it in the tree", [&] {
      QTest::keyClick(&all.Text(), Qt::Key_Return);
      AwaitWay();
    });
    Measure("find: the next one", [&] {
      Choose(Command::kFindNext);
      AwaitWay();
    });
    Measure("callers of it", [&] {
      Choose(Command::kShowCallers);
      QTest::qWait(kDialogMilliseconds);
    });
    Measure("back", [&] { Choose(Command::kGoBack); });
    Choose(Command::kFind);
    Measure("find: everything again", [&] {
      all.Text().clear();
      Await(all);
    });
    for (int column = 0; column < table.model()->columnCount(); ++column) {
      const QString title = table.model()->headerData(column, Qt::Horizontal).toString();
      Measure(("sort all functions by " + title.toLower()).toUtf8().constData(), [&] {
        emit table.horizontalHeader()->sectionClicked(column);
        Await(all);
      });
    }
    Measure("copy them all", [&] {
      table.setFocus();
      table.selectAll();
      Choose(Command::kCopy);
      Await(all);
    });
    Choose(Command::kAllFunctions);
    application_.Frame().TreeView().setFocus();
  }
  void AwaitWay() { QTest::qWait(kWayMilliseconds); }

  void Adjustments() {
    CStkTreeView& tree = application_.Frame().TreeView();
    tree.setCurrentIndex(tree.model()->index(0, 0));
    Measure("adjust: margin", [&] {
      Choose(Command::kAdjustStackSize);
      Finish();
    });
    CStkDoc& document = application_.Context().document;
    Measure("views alone: sizes", [&] { document.UpdateAllViews(nullptr, HINT_SIZES); });
    Measure("views alone: structure", [&] { document.UpdateAllViews(nullptr, HINT_STRUCTURE); });
    callee_ = document.FunctionTable()->Functions().back();
    Measure("adjust: a callee", [&] {
      Choose(Command::kAdjustStackSize);
      Finish();
    });
    shows_ = true;
    Measure("Adjust Stack Size dialog", [&] { Choose(Command::kAdjustStackSize); });
    Measure("Adjust Stack Size dialog again", [&] { Choose(Command::kAdjustStackSize); });
    Measure("Function lists dialog", [&] { Choose(Command::kFunctionLists); });
  }

  void WhileAnalysing() {
    Measure("recalculate", [&] {
      Choose(Command::kRecalculate);
      Finish();
    });
    Measure("recalculate, a menu after a second", [&] {
      Choose(Command::kRecalculate);
      QTest::qWait(1000);
      OpenMenu();
    });
    Measure("stop", [&] { Choose(Command::kStop); });
    Measure("exit", [&] { Choose(Command::kExit); });
  }
  void OpenMenu() {
    QElapsedTimer time;
    time.start();
    QMenu* menu = application_.Frame().menuBar()->actions().at(1)->menu();
    menu->popup(QPoint(10, 10));
    const bool shown = QTest::qWaitForWindowExposed(menu);
    const bool canStop = application_.Frame().Actions().Of(Command::kStop).isEnabled();
    std::printf("  after %lld ms the menu is %s and Stop %s\n",
                static_cast<long long>(time.elapsed()), shown ? "open" : "not open",
                canStop ? "enabled" : "disabled");
    menu->close();
  }

  static constexpr int kDialogMilliseconds = 4000;
  static constexpr int kWayMilliseconds = 3000;

  const StkMessages messages_;
  WindowSettings settings_;
  NoBoxes boxes_;
  WindowFileDialogs fileDialogs_;
  bool shows_ = false;
  uint32_t margin_ = 0;
  StkFunction* callee_ = nullptr;
  Heartbeat heart_;
  NotificationQueue posted_;
  CStkApp application_;
};

int Run(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: window_bench FOLDER [FUNCTIONS]\n");
    return 2;
  }
  LargeProject project;
  if (argc > 2) {
    project.functions = std::strtoull(argv[2], nullptr, 10);
  }
  const std::string path = WriteLargeProject(argv[1], project);
  std::string error;
  const auto machine = LocalMachine::Create({}, error);
  WindowBench(*machine).Run(machine->AbsolutePath(path));
  return 0;
}

}  // namespace
}  // namespace velkor::ui

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication toolkit(argc, argv);
  return velkor::ui::Run(argc, argv);
}
