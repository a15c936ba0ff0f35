#pragma once

#include "messages/message.h"
#include "messages/note.h"

namespace velkor {

// The log, as whoever shows it sees it. Only StkReporter appends to it. User-interface thread.
class LogView {
 public:
  virtual ~LogView() = default;
  // Adds the message's text, as a line of its own.
  virtual void Append(const StkMessage& message) = 0;
  virtual void AppendNote(const StkNote& note) = 0;
};

}  // namespace velkor
