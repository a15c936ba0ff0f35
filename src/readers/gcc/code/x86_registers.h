#pragma once

#include <cstdint>

namespace velkor {

// Numbers of x86's registers, as instructions hold them.
enum X86Register : uint8_t {
  X86_AX = 0,
  X86_CX = 1,
  X86_DX = 2,
  X86_BX = 3,
  X86_SP = 4,
  X86_BP = 5,
  X86_SI = 6,
  X86_DI = 7,
  X86_11 = 11,
  X86_IP = 16,
  X86_REGISTERS = 17,
};

}  // namespace velkor
