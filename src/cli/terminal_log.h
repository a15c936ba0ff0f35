#pragma once

#include <string_view>
#include <vector>

#include "cli/progress_line.h"
#include "messages/log_view.h"
#include "platform/code_page.h"

namespace velkor::cli {

// The log on standard error, one message a line, in UTF-8. Keeps what it has shown, and the notes,
// which it does not show: they follow the results.
class TerminalLog : public LogView {
 public:
  // quiet: of the messages only warnings and errors are shown.
  TerminalLog(const CodePage& codePage, ProgressLine& progress, bool quiet)
      : codePage_(codePage), progress_(progress), quiet_(quiet) {}

  void Append(const StkMessage& message) override;
  void AppendNote(const StkNote& note) override { notes_.push_back(note); }
  // A line that is no message of the log but is said in the same place.
  void Say(std::string_view text);

  const std::vector<StkMessage>& Messages() const { return messages_; }
  const std::vector<StkNote>& Notes() const { return notes_; }
  // Another analysis begins.
  void ForgetNotes() { notes_.clear(); }
  // Whether a message says so: each warning but that a total is over the limit.
  bool AnythingUnread() const;

 private:
  const CodePage& codePage_;
  ProgressLine& progress_;
  const bool quiet_;
  std::vector<StkMessage> messages_;
  std::vector<StkNote> notes_;
};

}  // namespace velkor::cli
