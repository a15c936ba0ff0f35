#include "fuzz/fuzz_input.h"

#include <algorithm>
#include <array>

namespace velkor::testing {

uint8_t FuzzInput::Byte() {
  if (rest_.empty()) {
    return '0';
  }
  const auto byte = static_cast<uint8_t>(rest_.front());
  rest_.remove_prefix(1);
  return byte;
}

const CodePage& FuzzInput::Page() {
  static const std::array<CodePage, 3> kPages = {CodePage::Utf8(), CodePage::ShiftJis(),
                                                 CodePage::Latin1()};
  return kPages[Below(kPages.size())];
}

std::string_view FuzzInput::UpTo(std::string_view mark) {
  const size_t length = std::min(rest_.find(mark), rest_.size());
  const std::string_view text = rest_.substr(0, length);
  rest_.remove_prefix(std::min(length + mark.size(), rest_.size()));
  return text;
}

}  // namespace velkor::testing
