#pragma once

#include <deque>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/event.h"
#include "qt_environment.h"
#include "support/recorder.h"
#include "support/test_host.h"
#include "ui/application.h"

namespace velkor::testing {

// Answers every request for a file with the next prepared path; none: cancelled.
class PreparedDialogs : public FileDialogs {
 public:
  std::optional<std::string> ProjectToOpen(UiContext&, QWidget*) override {
    return Next("project");
  }
  std::optional<std::string> SpecFileToLoad(UiContext&, QWidget*) override { return Next("load"); }
  std::optional<std::string> SpecFileToSave(UiContext&, QWidget*) override { return Next("save"); }
  std::optional<std::string> ReportToSave(UiContext&, QWidget*) override { return Next("report"); }

  std::deque<std::optional<std::string>> answers;
  std::vector<std::string> asked;

 private:
  std::optional<std::string> Next(const std::string& kind);
};

// The whole application in memory, with its real frame and views; boxes and dialogs are recorded
// and answered by the test. The project C:\p\app.prj has the modules a (main 10 -> f, f 20 -> x)
// and b (g 5); x is unknown.
class MainWindow : public ::testing::Test {
 protected:
  MainWindow();
  ~MainWindow() override;

  void Start(const std::optional<std::string>& project);
  void StartAndFinish() {
    Start(kProject);
    Finish();
  }
  // Until no job is left and everything that was posted has been handled.
  void Finish();
  static bool WaitUntil(const std::function<bool()>& condition);
  void HandleEvents();
  // The analysis waits in its second module until Release.
  void BlockAnalysis();
  void Release() { released.Set(); }
  void WaitUntilBlocked();

  void Choose(Command command) { app->Frame().Actions().Of(command).trigger(); }
  bool IsEnabled(Command command) { return app->Frame().Actions().Of(command).isEnabled(); }
  // The numbers of all enabled commands.
  std::string Enabled();
  void Focus(QWidget& view);
  StkFunction& Function(const std::string& cName);
  std::string Log();
  std::string BoxTexts() const;
  bool HasJobs() const;
  CStkDoc& Document() { return app->Context().document; }

  static constexpr const char* kProject = "C:\\p\\app.prj";
  static constexpr const char* kSystemFile = "C:\\p\\app.psg";

  QApplication& application = TestApplication();
  TestHost host;
  StkMessages messages{WindowMessages(host.codePage, Language::kEnglish)};
  RecordingBoxes boxes;
  PreparedDialogs dialogs;
  AdjustAnswer adjustAnswer;
  std::vector<std::string> windows;  // other windows that were asked for
  int closedCount = 0;
  Event reached{Event::Reset::kManual};
  Event released{Event::Reset::kManual};
  std::unique_ptr<CStkApp> app;
};

}  // namespace velkor::testing
