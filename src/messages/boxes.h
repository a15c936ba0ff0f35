#pragma once

#include <cstdint>

#include "messages/message.h"

namespace velkor {

enum class BoxIcon { kExclamation, kQuestion };
enum class BoxButtons { kOk, kYesNo, kAbortRetryIgnore };
// The numbers of the standard message-box answers.
enum class BoxAnswer : int32_t { kOk = 1, kAbort = 3, kRetry = 4, kIgnore = 5, kYes = 6, kNo = 7 };

// Shows a message's text and waits for a button. User-interface thread only. A warning and the
// message of a stop question stand in the log already; an error stands nowhere else.
class MessageBoxes {
 public:
  virtual ~MessageBoxes() = default;
  virtual BoxAnswer Show(const StkMessage& message, BoxIcon icon, BoxButtons buttons) = 0;
};

}  // namespace velkor
