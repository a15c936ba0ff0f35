#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "messages/channels.h"
#include "messages/messages.h"

namespace velkor {

// The reporting operations: they choose a text by its key, format it and deliver it over one
// channel. One for the whole run, handed to everything that reports. Where a comment says so an
// operation belongs to the user-interface thread; the others may be called from any thread.
class StkReporter {
 public:
  StkReporter(const StkMessages& messages, MessageBoxes& boxes);

  const StkMessages& Messages() const { return messages_; }

  // The log view from the creation of its window to its destruction; none before and after.
  // User-interface thread. After RegisterLogView(nullptr) no job touches the view any more.
  void RegisterLogView(LogView* logView);
  // Set at start when the command line names a project; cleared by Open Project and Recalculate.
  bool OpenedFromCommandLine() const { return openedFromCommandLine_; }
  void SetOpenedFromCommandLine(bool opened) { openedFromCommandLine_ = opened; }
  // What a fatal message does after its box when OpenedFromCommandLine is set: posts a close
  // request to the main window.
  void SetCloseRequest(std::function<void()> postClose) { postClose_ = std::move(postClose); }

  // User-interface thread.
  void ShowFatal(MessageKey key, MessageArguments arguments);
  void ShowWarning(MessageKey key, MessageArguments arguments);
  void LogMessage(MessageKey key, MessageArguments arguments);
  bool AskYesNo(MessageKey key, MessageArguments arguments);

  // Any thread.
  void PostWarning(MessageKey key, MessageArguments arguments);
  void PostLog(MessageKey key, MessageArguments arguments);
  std::string FormatMessageText(MessageKey key, MessageArguments arguments) const {
    return messages_.FormatMessageText(key, arguments);
  }

  // A background job: asks whether reading shall stop. current is the file's answer so far; the
  // result is its new one. A signalled stop event ends the wait with Abort. The stop event is
  // not consumed when it has manual reset. A request that cannot be delivered, or that the view
  // drops unhandled, counts as Abort.
  StopAnswer AskStopReading(Event& stopEvent, StopAnswer current, std::string_view text);

  // User-interface thread: what the log view does with a request that was posted to it.
  void HandleLogRequest(LogRequest request);

 private:
  void Append(std::string_view text);
  bool Post(uint32_t message, std::string_view text, std::shared_ptr<StopQuestion> question);

  const StkMessages& messages_;
  MessageBoxes& boxes_;
  std::function<void()> postClose_;
  std::atomic<bool> openedFromCommandLine_{false};
  std::mutex logViewMutex_;  // held while posting, so that a view is not destroyed under a post
  LogView* logView_ = nullptr;
};

}  // namespace velkor
