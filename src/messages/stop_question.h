#pragma once

#include <cstdint>

#include "platform/event.h"

namespace velkor {

// The state of the stop question of one file.
enum class StopAnswer : int32_t { kAbort = 3, kRetry = 4, kIgnore = 5 };

// A stop question that is on its way, shared by the asking job and the thread that shows it; it
// lives until whichever of the two finishes last lets it go.
struct StopQuestion {
  Event answered{Event::Reset::kAutomatic};
  StopAnswer answer = StopAnswer::kAbort;  // written before answered is set, read after it
};

}  // namespace velkor
