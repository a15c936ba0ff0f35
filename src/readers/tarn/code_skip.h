#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace velkor {

struct SkippedLines {
  size_t bytes = 0;  // line ends included
  uint32_t lines = 0;
};

// The lines at the start of text that certainly store nothing when they stand in a function's
// code: nearly all instructions and comments. text begins at the start of a line. Skips no line
// that is longer than maxLength bytes, nor the last few bytes of text. A line that it does not
// skip may store nothing all the same.
SkippedLines SkipPlainCode(std::string_view text, uint32_t maxLines, size_t maxLength);

}  // namespace velkor
