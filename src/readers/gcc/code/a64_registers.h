#pragma once

#include <cstdint>

namespace velkor {

// Numbers of AArch64's registers.
enum A64Register : uint8_t {
  A64_LR = 30,
  A64_SP = 31,
  A64_PC = 32,
  A64_REGISTERS = 33,
};

}  // namespace velkor
