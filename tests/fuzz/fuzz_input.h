#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "platform/code_page.h"

namespace velkor::testing {

// Takes an input apart: its first bytes choose, what is left is text. Nothing left reads as zeros
// and empty texts, so that every input is a whole one.
class FuzzInput {
 public:
  // Stands between two sections on a line of its own.
  static constexpr std::string_view kSectionBreak = "\n@@@@\n";

  explicit FuzzInput(std::string_view bytes) : rest_(bytes) {}

  uint8_t Byte() {
    const std::string_view byte = Taken(1, 1);
    return byte.empty() ? '0' : static_cast<uint8_t>(byte.front());
  }
  // 0 to count - 1. A digit's character chooses its value, so that inputs can be written by hand.
  uint32_t Below(uint32_t count) {
    const uint32_t low = (Byte() + 256u - '0') % 256u;
    return (count > 256 ? Byte() * 256u + low : low) % count;
  }
  // UTF-8, Shift-JIS or a single-byte set.
  const CodePage& Page() {
    static const std::array<CodePage, 3> kPages = {CodePage::Utf8(), CodePage::ShiftJis(),
                                                   CodePage::Latin1()};
    return kPages[Below(kPages.size())];
  }
  // Up to the next section break, or the next line feed, which is taken as well.
  std::string_view Section() { return UpTo(kSectionBreak); }
  std::string_view Line() { return UpTo("\n"); }
  std::string_view Rest() const { return rest_; }
  bool AtEnd() const { return rest_.empty(); }

 private:
  std::string_view UpTo(std::string_view mark) {
    const size_t length = std::min(rest_.find(mark), rest_.size());
    return Taken(length, length + mark.size());
  }
  // The first bytes, of as many that are taken.
  std::string_view Taken(size_t length, size_t taken) {
    const std::string_view text = rest_.substr(0, length);
    rest_.remove_prefix(std::min(taken, rest_.size()));
    return text;
  }

  std::string_view rest_;
};

}  // namespace velkor::testing
