#pragma once

#include <cstdint>

namespace velkor {

// Limits that several kinds of texts and files have in common.

// Bytes of a line that is read or written, of a value of an INI file, and of a message.
constexpr uint32_t kMaxTextLength = 5119;
// What holds such a text and the zero byte that ends it.
constexpr uint32_t kTextBufferSize = kMaxTextLength + 1;
// Lines of a specification file, of a report and of the log.
constexpr uint32_t kMaxTextLines = 32767;
// Longer paths are refused with W9407.
constexpr uint32_t kMaxPathLength = 255;

}  // namespace velkor
