#pragma once

namespace velkor {

// How the writing of a file ended.
enum class WriteEnd {
  kCompleted,
  kStopped,  // the caller's hook asked for it
  kFailed,   // PostFailure of the writer says why
};

}  // namespace velkor
