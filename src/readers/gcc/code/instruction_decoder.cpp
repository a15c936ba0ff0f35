#include "readers/gcc/code/instruction_decoder.h"

#include <algorithm>
#include <bit>

#include "readers/gcc/code/a64_decoder.h"
#include "readers/gcc/code/arm_decoder.h"
#include "readers/gcc/code/x86_decoder.h"

namespace velkor {

size_t KeptCount(uint64_t codeBytes) {
  constexpr uint64_t kLeast = 64;
  constexpr uint64_t kMost = 65536;
  return static_cast<size_t>(std::bit_ceil(std::clamp(codeBytes / 2, kLeast, kMost)));
}

std::unique_ptr<InstructionDecoder> MakeInstructionDecoder(const ElfFile& elf) {
  uint64_t codeBytes = 0;
  for (const ElfSection& section : elf.Sections()) {
    codeBytes += section.HasCode() ? section.bytes.size() : 0;
  }
  if (elf.Order() != ByteOrder::kLittle) {
    return nullptr;
  }
  switch (elf.Machine()) {
    case ELF_ARM:
      return std::make_unique<ArmDecoder>(codeBytes);
    case ELF_AARCH64:
      return elf.Is64() ? std::make_unique<A64Decoder>() : nullptr;
    case ELF_X86_64:
      return elf.Is64() ? std::make_unique<X86Decoder>(codeBytes) : nullptr;
    default:
      return nullptr;
  }
}

}  // namespace velkor
