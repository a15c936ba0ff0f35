#include "readers/gcc/code/instruction_decoder.h"

#include "readers/gcc/code/arm_decoder.h"
#include "readers/gcc/code/x86_decoder.h"
#include "readers/gcc/elf_file.h"

namespace velkor {

std::unique_ptr<InstructionDecoder> MakeInstructionDecoder(uint16_t machine, ByteOrder order) {
  if (order != ByteOrder::kLittle) {
    return nullptr;
  }
  switch (machine) {
    case ELF_ARM:
      return std::make_unique<ArmDecoder>();
    case ELF_X86_64:
      return std::make_unique<X86Decoder>();
    default:
      return nullptr;
  }
}

}  // namespace velkor
