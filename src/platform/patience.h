#pragma once

#include <chrono>

#include "platform/file_system.h"

namespace velkor {

// How long a lock of another is waited for: not at all, or for a time that begins now, unless
// somebody gives up before.
class Patience {
 public:
  // Between two tries.
  static constexpr std::chrono::milliseconds kPause{5};

  Patience() = default;
  Patience(std::chrono::milliseconds time, const FileSystem::GiveUp& giveUp)
      : until_(std::chrono::steady_clock::now() + time), giveUp_(giveUp) {}

  bool IsOver() const {
    return std::chrono::steady_clock::now() >= until_ || (giveUp_ && giveUp_());
  }

 private:
  std::chrono::steady_clock::time_point until_;
  FileSystem::GiveUp giveUp_;
};

}  // namespace velkor
