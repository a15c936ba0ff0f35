#include "cli/terminal_log.h"

#include <algorithm>
#include <cstdio>

#include "cli/terminal_text.h"

namespace velkor {
namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// "W9430 Cannot ..." or "E9300 Cannot ...".
bool HasWarningCode(std::string_view text) {
  constexpr size_t kCodeLength = 5;
  return text.size() > kCodeLength && (text[0] == 'W' || text[0] == 'E') &&
         text[kCodeLength] == ' ' &&
         std::all_of(text.begin() + 1, text.begin() + kCodeLength, IsDigit);
}

}  // namespace

void TerminalLog::Append(std::string_view text) {
  lines_.emplace_back(text);
  Say(text);
}

void TerminalLog::Say(std::string_view text) {
  warningCount_ += HasWarningCode(text) ? 1U : 0U;
  progress_.Erase();
  const std::string line = OneLine(codePage_.ToUtf8(text)) + "\n";
  std::fwrite(line.data(), 1, line.size(), stderr);
}

bool TerminalLog::PostRequest(LogRequest request) {
  queue_.Post([this, request = std::move(request)]() mutable {
    reporter_->HandleLogRequest(std::move(request));
  });
  return true;
}

}  // namespace velkor
