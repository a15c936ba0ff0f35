#pragma once

#include <cstdint>

namespace velkor {

// How the writing of a file ended.
enum class WriteEnd {
  kCompleted,
  kStopped,  // the caller's hook asked for it
  kFailed,   // PostFailure of the writer says why
};

// Limits of every file that the system writes.
constexpr uint32_t kMaxOutputLines = 32767;
constexpr uint32_t kMaxOutputLineLength = 5119;

}  // namespace velkor
