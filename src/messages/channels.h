#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/event.h"
#include "platform/message_target.h"

namespace velkor {

enum class BoxIcon { kExclamation, kQuestion };
enum class BoxButtons { kOk, kYesNo, kAbortRetryIgnore };
// The numbers of the standard message-box answers.
enum class BoxAnswer : int32_t { kOk = 1, kAbort = 3, kRetry = 4, kIgnore = 5, kYes = 6, kNo = 7 };

// Shows a message and waits for a button. User-interface thread only. Texts are bytes of the
// run's code page.
class MessageBoxes {
 public:
  virtual ~MessageBoxes() = default;
  virtual BoxAnswer Show(std::string_view text, BoxIcon icon, BoxButtons buttons) = 0;
};

// The state of the stop question of one file.
enum class StopAnswer : int32_t { kAbort = 3, kRetry = 4, kIgnore = 5 };

// A stop question that is on its way, shared by the asking job and the thread that shows it; it
// lives until whichever of the two finishes last lets it go.
struct StopQuestion {
  Event answered{Event::Reset::kAutomatic};
  StopAnswer answer = StopAnswer::kAbort;  // written before answered is set, read after it
};

// What background jobs post to the log view.
constexpr uint32_t LogWarningRequest = WM_USER + 11;
constexpr uint32_t LogLineRequest = WM_USER + 12;
constexpr uint32_t StopQuestionRequest = WM_USER + 13;

struct LogRequest {
  uint32_t message = LogLineRequest;
  std::string text;                        // a copy of its own
  std::shared_ptr<StopQuestion> question;  // for StopQuestionRequest only
};

// The log: the one way by which messages reach it.
class LogView {
 public:
  virtual ~LogView() = default;
  // User-interface thread: adds the text as a line of its own. The text may hold line breaks.
  virtual void Append(std::string_view text) = 0;
  // Any thread; never waits. The view hands the request to StkReporter::HandleLogRequest on the
  // user-interface thread, in the order of posting. False when it cannot be delivered.
  virtual bool PostRequest(LogRequest request) = 0;
};

}  // namespace velkor
