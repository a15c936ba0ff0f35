#pragma once

#include <cstdint>

namespace velkor {

// What call frame information says of one function.
struct FunctionFrame {
  uint32_t section = 0;  // where it begins, by number; 0 in a linked program
  uint64_t address = 0;  // the place within the section, or the address
  // The largest distance of the frame address from any register, over all places of the function,
  // in bytes as the compiler's own figure counts them (what a call pushes itself is counted where
  // that counts it). Less than the function uses where it works with a frame pointer.
  uint64_t bytes = 0;
  bool isWhole = true;  // false: at some place the information gives no number
};

}  // namespace velkor
