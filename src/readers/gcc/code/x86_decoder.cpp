#include "readers/gcc/code/x86_decoder.h"

#include <bit>

#include "readers/gcc/code/x86_registers.h"
#include "readers/gcc/code/x86_translation.h"

namespace velkor {
namespace {

constexpr uint64_t kX86Origin = 0x100000000;
constexpr size_t kLongestInstruction = 15;
constexpr uint64_t kX86LostInCalls = 0x10FC7;  // rax, rcx, rdx, rsi, rdi, r8 to r11

constexpr size_t kMostKeptLength = 7;

uint16_t Start(std::string_view bytes) {
  return static_cast<uint16_t>(static_cast<uint8_t>(bytes[0]) | static_cast<uint8_t>(bytes[1])
                                                                    << 8);
}

uint64_t Value(std::string_view bytes, size_t length) {
  uint64_t value = 0;
  for (size_t i = length; i > 0; --i) {
    value = value << 8 | static_cast<uint8_t>(bytes[i - 1]);
  }
  return value;
}

uint64_t Mixed(uint64_t value, size_t length) {
  return (value ^ uint64_t{length} << 60) * 0x9E3779B97F4A7C15U >> 32;
}

}  // namespace

X86Decoder::X86Decoder(uint64_t codeBytes)
    : conventions_{.registerCount = X86_REGISTERS,
                   .stackRegister = X86_SP,
                   .jumpRegister = X86_IP,
                   .linkRegister = CodeInstruction::kNone,
                   .wordSize = 8,
                   .stackAlignment = 8,
                   .lostInCalls = kX86LostInCalls,
                   .numberMask = UINT64_MAX,
                   .hasDataInCode = false},
      session_(CS_ARCH_X86, CS_MODE_64),
      kept_(KeptCount(codeBytes)) {}

CodeInstruction X86Decoder::Decode(std::string_view bytes, uint64_t /*address*/) {
  if (const CodeInstruction* known = Find(bytes)) {
    return *known;
  }
  const cs_insn* decoded = session_.Decode(bytes.substr(0, kLongestInstruction), kX86Origin);
  if (decoded == nullptr) {
    CodeInstruction unknown;
    unknown.length = 1;
    return unknown;
  }
  const CodeInstruction instruction = TranslateX86(*decoded, kX86Origin);
  Keep(bytes, instruction);
  return instruction;
}

size_t X86Decoder::SlotOf(uint64_t value, size_t length) const {
  return static_cast<size_t>(Mixed(value, length)) & (kept_.size() - 1);
}

const CodeInstruction* X86Decoder::Find(std::string_view bytes) const {
  if (bytes.size() < kMostKeptLength + 1) {
    return nullptr;
  }
  for (unsigned left = lengths_[Start(bytes)]; left != 0; left &= left - 1) {
    const auto length = static_cast<size_t>(std::countr_zero(left)) + 1;
    const uint64_t value = Value(bytes, length);
    const Kept& kept = kept_[SlotOf(value, length)];
    if (kept.length == length && kept.bytes == value) {
      return &kept.instruction;
    }
  }
  return nullptr;
}

void X86Decoder::Keep(std::string_view bytes, const CodeInstruction& instruction) {
  const size_t length = instruction.length;
  if (length == 0 || length > kMostKeptLength || bytes.size() < kMostKeptLength + 1) {
    return;
  }
  const uint64_t value = Value(bytes, length);
  kept_[SlotOf(value, length)] = {value, instruction.length, instruction};
  lengths_[Start(bytes)] = static_cast<uint8_t>(lengths_[Start(bytes)] | 1U << (length - 1));
}

}  // namespace velkor
