#include <QTextBlock>
#include <QTimer>
#include <ctime>
#include <thread>

#include "main_window.h"

namespace velkor::ui {
namespace {

class LogViewOfTheWindow : public MainWindow {
 protected:
  LogViewOfTheWindow() { Start(std::nullopt); }
  void Append(const std::string& text) { View().Append({.text = text}); }
  CStkLogView& View() { return app->Frame().GetLogView(); }
};

TEST_F(LogViewOfTheWindow, AMessageIsOneLine) {
  Append("W9400 Cannot find file (a).\nCheck that the specified file name is correct.");
  Append(
      "a\rb\xE2\x80\xA8"
      "c\xE2\x80\xA9"
      "d\xFF");
  View().AppendNote({.rule = "some-rule", .text = "e\nf", .file = {}, .function = {}});
  View().AppendNote({.rule = "r", .text = "g", .file = "C:\\p", .line = 7, .function = {}});
  EXPECT_EQ(Log(),
            "W9400 Cannot find file (a). Check that the specified file name is correct.\n"
            "a b c d\xEF\xBF\xBD\nNote: e f\nNote: C:\\p:7: g\n");
  EXPECT_EQ(View().blockCount(), 5);
}

TEST_F(LogViewOfTheWindow, TheOldestLinesDisappear) {
  constexpr int kKept = CStkLogView::kMaxLines - 1;
  int appended = 0;
  for (const int count : {kKept, kKept + 1, 100000}) {
    while (appended < count) {
      Append(std::to_string(++appended));
    }
    ShowWholeLog();
    EXPECT_EQ(View().blockCount(), CStkLogView::kMaxLines);
    EXPECT_EQ(View().document()->firstBlock().text().toInt(), count - kKept + 1);
    EXPECT_EQ(View().document()->lastBlock().previous().text().toInt(), count);
  }
}

// What this thread has worked, however busy the machine is with something else.
double WorkedSeconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

TEST_F(LogViewOfTheWindow, ManyLinesDoNotKeepTheWindowFromAnswering) {
  double longest = 0;
  double last = WorkedSeconds();
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] {
    const double before = std::exchange(last, WorkedSeconds());
    longest = std::max(longest, last - before);
  });
  timer.start(0);
  std::thread job([this] {
    for (int i = 0; i < 100000; ++i) {
      app->Context().reporter.PostLog(MessageKey::kReadingStarted, {"C:\\p\\some\\module.asm"});
    }
    app->Context().reporter.PostLog(MessageKey::kReadingCompleted, {"last"});
  });
  const auto lastLine = [this] { return View().document()->lastBlock().previous().text(); };
  EXPECT_TRUE(WaitUntil([&] { return lastLine() == "last Reading completed."; }));
  job.join();
  EXPECT_LT(longest, 1) << "far above what it takes";
}

}  // namespace
}  // namespace velkor::ui
