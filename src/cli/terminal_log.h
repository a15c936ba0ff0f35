#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/progress_line.h"
#include "messages/reporter.h"
#include "platform/message_target.h"

namespace velkor {

// The log on standard error, one message a line, in UTF-8. Keeps what it has shown.
class TerminalLog : public LogView {
 public:
  // queue: of the user-interface thread, where posted requests are handled.
  TerminalLog(const CodePage& codePage, MessageQueue& queue, ProgressLine& progress)
      : codePage_(codePage), queue_(queue), progress_(progress) {}

  // Before the first request.
  void SetReporter(StkReporter& reporter) { reporter_ = &reporter; }

  void Append(std::string_view text) override;
  bool PostRequest(LogRequest request) override;
  // A line that is no message of the log but is said in the same place.
  void Say(std::string_view text);

  // Every message, as it was given: bytes of the code page, with its line breaks.
  const std::vector<std::string>& Lines() const { return lines_; }
  // How many messages with the code of an error or a warning have been said.
  size_t WarningCount() const { return warningCount_; }
  bool AnyWarning() const { return warningCount_ > 0; }

 private:
  const CodePage& codePage_;
  MessageQueue& queue_;
  ProgressLine& progress_;
  StkReporter* reporter_ = nullptr;
  std::vector<std::string> lines_;
  size_t warningCount_ = 0;
};

}  // namespace velkor
