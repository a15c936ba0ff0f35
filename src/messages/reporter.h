#pragma once

#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "messages/boxes.h"
#include "messages/catalogue.h"
#include "messages/log_view.h"
#include "messages/note.h"
#include "messages/stop_question.h"

namespace velkor {

// The reporting operations: they make a message from its key and deliver it over one channel. One
// for the whole run, handed to everything that reports. Where a comment says so an operation
// belongs to the user-interface thread; the others may be called from any thread.
//
// What jobs post waits here, in the order of posting, until the user-interface thread handles it.
class StkReporter {
 public:
  // requestPosted is called once for each request that a job has posted, in the thread of the job:
  // it has HandleRequest called in the user-interface thread, after everything that the job posted
  // there before. It never waits; when it throws std::bad_alloc the request is withdrawn. Without
  // it nothing can be posted.
  StkReporter(const StkMessages& messages, MessageBoxes& boxes,
              std::function<void()> requestPosted = {});

  const StkMessages& Messages() const { return messages_; }

  // The log view from the creation of its window to its destruction; none before and after.
  // User-interface thread. What is posted while there is none, or waits when it goes, is dropped.
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
  void PostNote(StkNote note);

  // A background job: asks whether reading shall stop. current is the file's answer so far; the
  // result is its new one. A signalled stop event ends the wait with Abort. The stop event is
  // not consumed when it has manual reset. A question that cannot be posted, or that is dropped
  // unhandled, counts as Abort.
  StopAnswer AskStopReading(Event& stopEvent, StopAnswer current, StkMessage message);

  // User-interface thread: handles the request that waits longest, if any.
  void HandleRequest();

 private:
  enum class Channel { kLog, kWarning, kStopQuestion, kNote };
  struct Request {
    Channel channel = Channel::kLog;
    StkMessage message{};
    std::shared_ptr<StopQuestion> question{};  // of kStopQuestion
    StkNote note{};                            // of kNote
  };

  void Append(const StkMessage& message);
  // False when it is dropped.
  bool Post(Request request);
  void Withdraw();
  std::optional<Request> TakeRequest();
  void ShowStopQuestion(Request request);

  const StkMessages& messages_;
  MessageBoxes& boxes_;
  const std::function<void()> requestPosted_;
  std::function<void()> postClose_;
  std::atomic<bool> openedFromCommandLine_{false};
  LogView* logView_ = nullptr;
  // Held while a request is put into the queue and told of, so that both have one order.
  std::mutex postingMutex_;
  bool canPost_ = false;
  std::mutex requestsMutex_;
  std::deque<Request> requests_;
};

}  // namespace velkor
