#pragma once

#include <QApplication>
#include <QPushButton>
#include <deque>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/event.h"
#include "support/recorder.h"
#include "support/test_host.h"
#include "ui/application.h"
#include "ui/dialogs/function_list_box.h"

namespace velkor::ui {

// Answers every request for a file with the next prepared path; none: cancelled.
class PreparedDialogs : public FileDialogs {
 public:
  std::optional<std::string> ProjectToOpen(UiContext&, QWidget*) override { return Next(); }
  std::optional<std::string> FolderToOpen(UiContext&, QWidget*) override { return Next(); }
  std::optional<std::string> SpecFileToLoad(UiContext&, QWidget*) override { return Next(); }
  std::optional<std::string> SpecFileToSave(UiContext&, QWidget*) override { return Next(); }
  std::optional<std::string> ReportToSave(UiContext&, QWidget*) override { return Next(); }
  std::optional<std::string> PageToSave(UiContext&, QWidget*) override { return Next(); }

  std::deque<std::optional<std::string>> answers;

 private:
  std::optional<std::string> Next();
};

// The whole application in memory, with its real frame and views; boxes and dialogs are recorded
// and answered by the test. The project C:\p\app.prj has the modules a (functions: lines of C
// name, frame size and callees) and b (g 5).
class MainWindow : public ::testing::Test {
 protected:
  explicit MainWindow(const std::vector<std::string>& functions = {"main 10 f", "f 20 x"},
                      Language language = Language::kEnglish);
  ~MainWindow() override;

  // Another run with the settings of the one before.
  void MakeApp();
  void Start(const std::optional<std::string>& project);
  void StartAndFinish() {
    Start(kProject);
    Finish();
  }
  // Until no job is left and everything that was posted has been handled.
  void Finish();
  static bool WaitUntil(const std::function<bool()>& condition);
  void HandleEvents();
  // The next job that reads the path waits there until Release.
  void BlockAt(const std::string& path);
  void Release() { released.Set(); }
  void WaitUntilBlocked();
  // Chooses the command while a job is blocked, which goes on a little later.
  void ChooseWhileBlocked(Command command);

  void Choose(Command command) { app->Frame().Actions().Of(command).trigger(); }
  bool IsEnabled(Command command) { return app->Frame().Actions().Of(command).isEnabled(); }
  StkFunction& Function(const std::string& cName);
  std::string Log();
  // Everything that was appended to the log is in its text from here on.
  void ShowWholeLog();
  std::string BoxTexts() const;
  bool HasJobs() const;
  CStkDoc& Document() { return app->Context().document; }
  CStkTreeView& Tree() { return app->Frame().TreeView(); }
  CStkListView& List() { return app->Frame().ListView(); }

  // A line for each visible row of the tree: indentation, name, "<" where selected.
  std::string TreeText();
  // The names of the list's rows.
  std::string ListText();
  // The visible tree row that shows this name, counted from the top.
  QModelIndex Node(const QString& name, int occurrence = 0);
  void Click(const QModelIndex& node);

  // Of dialogs: each row on a line, "<" where selected.
  static std::string RowsOf(const FunctionListBox& rows);
  static void Select(FunctionListBox& rows, int row);
  // By its text without mnemonic.
  static QPushButton& Button(QWidget& dialog, const QString& text);

  static constexpr const char* kProject = "C:\\p\\app.prj";
  static constexpr const char* kSystemFile = "C:\\p\\app.psg";
  static constexpr const char* kModuleB = "C:\\p\\b.asm";

  testing::TestHost host;
  StkMessages messages;
  testing::RecordingBoxes boxes;
  PreparedDialogs dialogs;
  AdjustAnswer adjustAnswer;
  std::vector<std::string> adjusted;  // the functions for which the dialog was asked for
  int closedCount = 0;
  WindowSettings settings;          // of this run alone
  std::vector<std::string> opened;  // sources, each with its line
  Event reached{Event::Reset::kManual};
  Event released{Event::Reset::kManual};
  NotificationQueue posted;
  std::unique_ptr<CStkApp> app;

 private:
  const Language language_;
};

}  // namespace velkor::ui
