#include "readers/gcc/code/a64_decoder.h"

#include "readers/gcc/byte_reader.h"
#include "readers/gcc/code/a64_registers.h"
#include "readers/gcc/code/a64_translation.h"

namespace velkor {
namespace {

constexpr uint64_t kA64LostInCalls = 0x4007FFFF;  // x0 to x18, x30

}  // namespace

A64Decoder::A64Decoder()
    : conventions_{.registerCount = A64_REGISTERS,
                   .stackRegister = A64_SP,
                   .jumpRegister = A64_PC,
                   .linkRegister = A64_LR,
                   .wordSize = 8,
                   .stackAlignment = 16,
                   .lostInCalls = kA64LostInCalls,
                   .numberMask = UINT64_MAX} {}

CodeInstruction A64Decoder::Decode(std::string_view bytes, uint64_t address) {
  constexpr uint64_t kLength = 4;
  ByteReader reader(bytes, ByteOrder::kLittle);
  const uint32_t bits = reader.Word();
  const uint64_t before = address % kLength;
  if (reader.Failed() || before != 0) {
    CodeInstruction unknown;
    unknown.length = static_cast<uint8_t>(before != 0 ? kLength - before : 1);
    return unknown;
  }
  return TranslateA64(bits);
}

}  // namespace velkor
