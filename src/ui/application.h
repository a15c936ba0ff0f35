#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "document/document.h"
#include "messages/reporter.h"
#include "platform/host.h"
#include "ui/commands/command_target.h"
#include "ui/dialogs/file_dialogs.h"
#include "ui/dialogs/message_boxes.h"
#include "ui/frame_parts.h"
#include "ui/main_frame.h"
#include "ui/notification_queue.h"
#include "ui/ui_context.h"
#include "ui/version_texts.h"

namespace velkor::ui {

// What the application runs on, and the windows it opens. Everything outlives the application.
// Replaced in tests.
struct ApplicationParts {
  Host& host;
  const StkMessages& messages;
  MessageBoxes& boxes;
  FileDialogs& fileDialogs;
  NotificationQueue& posted;
  VersionTexts version;
  Language language = Language::kEnglish;
  std::function<AdjustAnswer(UiContext&, StkFunction&, QWidget* parent)> adjust;
  std::function<void(UiContext&, FrameOperations&, QWidget* parent)> functionLists;
  std::function<void(UiContext&, const VersionTexts&, QWidget* parent)> about;
  std::function<void(int topic)> showHelp;
  std::function<void()> closed;  // the main window has closed
  WindowSettings& settings;
  std::function<void(UiContext&, QWidget* parent)> legend;
  // True: the open project is to be opened anew, with the options that have changed.
  std::function<bool(UiContext&, QWidget* parent)> options;
  std::function<bool(UiContext&, const std::string& path, uint32_t line)> openSource;
  // Whether the input is to be read in another way than this run does: then it is opened by one
  // that does, once the window has closed.
  std::function<bool(UiContext&, const std::string& path)> readsOtherwise;
  std::function<void()> staysOpen;  // the window has not closed: nothing is to be opened after it
};

// The program: the one document, its main window and the channels between them; opens projects.
// Lives in the user-interface thread, beside the toolkit's own application object.
class CStkApp : public CommandTarget {
 public:
  explicit CStkApp(ApplicationParts parts);

  // Opens the project of the command line and shows the main window. False when that project
  // could not be opened; its messages have been shown, and no window.
  bool Start(const std::optional<std::string>& project);
  // As the document. False after a message: then there is an empty one.
  bool OpenDocumentFile(std::string_view path);

  std::optional<CommandState> StateOf(Command command) override;
  void Execute(Command command) override;

  UiContext& Context() { return context_; }
  CMainFrame& Frame() { return frame_; }

 private:
  FrameParts MakeFrameParts();
  using ChoosePath = std::optional<std::string> (FileDialogs::*)(UiContext&, QWidget*);
  void OpenChosen(ChoosePath choose);
  void OpenDropped(const QString& path);
  void Open(const std::string& path);
  void ShowOptions(QWidget* parent);

  ApplicationParts parts_;
  HoldingBoxes boxes_;
  StkReporter reporter_;
  CStkDoc document_;
  UiContext context_;
  CMainFrame frame_;
};

}  // namespace velkor::ui
