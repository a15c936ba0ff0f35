#pragma once

#include <string_view>

#include "messages/catalogue.h"
#include "readers/gcc/unit_recording.h"

namespace velkor {

// What an object without a call graph file is.
enum class LooseObject : uint8_t {
  kNoCode,
  kAssembler,   // its functions are recorded, sizes unknown; their calls count
  kCompiled,    // the same, but its compiler could have told more
  kForLinking,  // its code is made when the program is linked
  kUnreadable,  // no object of a known form
};

// Records it, with notes but for kForLinking and kUnreadable. recording is empty.
LooseObject RecordLooseObject(std::string_view path, std::string_view bytes,
                              const StkMessages& messages, UnitRecording& recording);

}  // namespace velkor
