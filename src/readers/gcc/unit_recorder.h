#pragma once

#include <string_view>

#include "messages/catalogue.h"
#include "readers/gcc/unit_recording.h"

namespace velkor {

// The files of one translation unit. Views into what the caller holds.
struct UnitFiles {
  std::string_view graphPath;
  std::string_view graph;
  std::string_view objectPath;  // empty: there is none
  std::string_view object;
  bool isLinkTime = false;
};

// Records a call graph and what its object says beyond it. recording is empty. Any thread.
void RecordUnit(const UnitFiles& files, const StkMessages& messages, UnitRecording& recording);

// Sizes above the limit of this input count as this many bytes; everything larger is over it.
inline constexpr uint32_t kGccSizeLimit = 0x7FFFFFFF;

}  // namespace velkor
