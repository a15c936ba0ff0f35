#include "cli/terminal_log.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "reports/terminal_text.h"

namespace velkor::cli {

void TerminalLog::Append(const StkMessage& message) {
  messages_.push_back(message);
  if (!quiet_ || message.IsWarning()) {
    Say(message.text);
  }
}

void TerminalLog::Say(std::string_view text) {
  progress_.Erase();
  const std::string line = reports::OneLine(codePage_.ToUtf8(text)) + "\n";
  std::fwrite(line.data(), 1, line.size(), stderr);
}

bool TerminalLog::AnythingUnread() const {
  return std::any_of(messages_.begin(), messages_.end(), [](const StkMessage& message) {
    const bool isOfTheResult =
        message.key == MessageKey::kW9465 || message.key == MessageKey::kW9466;
    return message.IsWarning() && !isOfTheResult;
  });
}

}  // namespace velkor::cli
