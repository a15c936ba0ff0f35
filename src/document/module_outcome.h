#pragma once

#include <cstdint>

namespace velkor {

// What became of a module of the input.
enum class ModuleOutcome : uint8_t {
  kMissing,   // could not be opened
  kNotWhole,  // not read to its end, refused, or a part; what was entered of it counts
  kRead,
};

}  // namespace velkor
