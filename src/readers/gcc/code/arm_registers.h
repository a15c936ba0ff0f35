#pragma once

#include <cstdint>

namespace velkor {

// Numbers of ARM's registers.
enum ArmRegister : uint8_t { ARM_SP = 13, ARM_LR = 14, ARM_PC = 15, ARM_REGISTERS = 16 };

}  // namespace velkor
