#pragma once

#include <cstdint>
#include <string>

#include "messages/message_key.h"

namespace velkor {

enum class Severity {
  kInformation,  // also a question
  kWarning,      // something was not read, not written or refused
  kError,        // the project could not be opened
};

// One message to the user, made where it arises and kept whole up to the edge, where each channel
// shows of it what it needs. Texts are bytes of the run's code page.
struct StkMessage {
  MessageKey key{};
  std::string text{};  // formatted, as the user reads it; may hold line breaks
  std::string file{};  // the file that it is about; empty: none
  uint32_t line = 0;   // of the file, from 1; 0: none

  // "W9431"; empty for a message without a code.
  std::string Code() const;
  Severity GetSeverity() const;
  // A warning or an error.
  bool IsWarning() const { return GetSeverity() != Severity::kInformation; }
};

}  // namespace velkor
