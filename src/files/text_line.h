#pragma once

#include <cstdint>
#include <string_view>

namespace velkor {

// A line as a reader of lines answers it.
struct TextLine {
  // The kept characters, line end excluded, at most the reader's limit. Points into the reader's
  // buffer: valid until its next read. May hold any byte, NUL too.
  std::string_view text;
  // Characters of the whole line; greater than text.size() when the line was cut.
  uint64_t length = 0;
};

}  // namespace velkor
