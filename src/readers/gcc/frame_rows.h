#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "readers/gcc/byte_reader.h"

namespace velkor {

// How far the frame address of one row of call frame information is from a register.
struct FrameOffset {
  enum class Kind : uint8_t { kUnset, kBytes, kExpression };  // the last: not known here

  int64_t bytes = 0;
  Kind kind = Kind::kUnset;
};

// How the instructions of an entry are to be read.
struct FrameEncoding {
  ByteOrder order = ByteOrder::kLittle;
  size_t addressSize = 4;
  int64_t dataFactor = 1;
};

// The rows of one function, or the state that all functions of a common entry begin with.
struct FrameRows {
  FrameOffset last;
  int64_t largest = 0;  // of all rows whose offset is known
  bool isWhole = true;  // false: a row's offset is not known
  bool isRead = true;   // false: an instruction is unknown or cut; the rows before it count
};

// Runs call frame instructions (DWARF, with the extensions of GCC) from a state on. Registers are
// not looked at: only the distance of the frame address counts.
FrameRows RunFrameInstructions(std::string_view instructions, const FrameEncoding& encoding,
                               FrameOffset first);

}  // namespace velkor
