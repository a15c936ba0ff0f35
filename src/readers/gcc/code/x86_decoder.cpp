#include "readers/gcc/code/x86_decoder.h"

#include <algorithm>

#include "readers/gcc/code/x86_registers.h"
#include "readers/gcc/code/x86_translation.h"

namespace velkor {
namespace {

constexpr uint64_t kX86Origin = 0x100000000;
constexpr size_t kLongestInstruction = 15;
constexpr uint64_t kX86LostInCalls = 0x10FC7;  // rax, rcx, rdx, rsi, rdi, r8 to r11

}  // namespace

X86Decoder::X86Decoder()
    : conventions_{.registerCount = X86_REGISTERS,
                   .stackRegister = X86_SP,
                   .jumpRegister = X86_IP,
                   .linkRegister = CodeInstruction::kNone,
                   .wordSize = 8,
                   .stackAlignment = 8,
                   .lostInCalls = kX86LostInCalls,
                   .numberMask = UINT64_MAX,
                   .hasDataInCode = false},
      session_(CS_ARCH_X86, CS_MODE_64) {}

CodeInstruction X86Decoder::Decode(std::string_view bytes, uint64_t /*address*/) {
  const cs_insn* decoded = session_.Decode(bytes.substr(0, kLongestInstruction), kX86Origin);
  if (decoded == nullptr) {
    CodeInstruction unknown;
    unknown.length = 1;
    return unknown;
  }
  return TranslateX86(*decoded, kX86Origin);
}

}  // namespace velkor
