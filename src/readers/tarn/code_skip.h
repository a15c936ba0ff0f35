#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace velkor {

struct SkippedLines {
  // A call of a symbol.
  struct Call {
    std::string_view name;  // points into the text
    uint32_t line;          // of those skipped, from 1
  };

  size_t bytes = 0;  // line ends included
  uint32_t lines = 0;
  std::vector<Call> calls;
};

// Passes the lines at the start of text that, standing in a function's code, certainly say nothing
// but which symbols they call: nearly all instructions and comments. text begins at the start of a
// line. Skips no line that is longer than maxLength bytes, nor the last few bytes of text. A line
// that it does not skip may say nothing all the same. skipped: what was skipped before is
// forgotten, its memory kept.
void SkipPlainCode(std::string_view text, uint32_t maxLines, size_t maxLength,
                   SkippedLines& skipped);

}  // namespace velkor
