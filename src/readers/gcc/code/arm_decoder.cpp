#include "readers/gcc/code/arm_decoder.h"

#include <algorithm>
#include <optional>

#include "readers/gcc/byte_reader.h"
#include "readers/gcc/code/arm_registers.h"
#include "readers/gcc/code/arm_translation.h"
#include "readers/gcc/code/thumb_direct.h"
#include "readers/gcc/code/thumb_forms.h"

namespace velkor {
namespace {

constexpr uint64_t kOrigin = 0x1000000;  // so that what is behind it has an address too
constexpr uint32_t kArmNothing = 0xE320F000;
constexpr uint32_t kArmNothingOfOld = 0xE1A00000;  // mov r0, r0
constexpr uint64_t kLostInCalls = 0x500F;          // r0 to r3, ip, lr

cs_mode Mode(int modes) {
  return static_cast<cs_mode>(modes);
}

CodeInstruction UnknownOf(uint8_t length) {
  CodeInstruction unknown;
  unknown.length = length;
  return unknown;
}

}  // namespace

ArmDecoder::ArmDecoder(uint64_t codeBytes)
    : conventions_{.registerCount = ARM_REGISTERS,
                   .stackRegister = ARM_SP,
                   .jumpRegister = ARM_PC,
                   .linkRegister = ARM_LR,
                   .wordSize = 4,
                   .stackAlignment = 4,
                   .lostInCalls = kLostInCalls,
                   .numberMask = UINT32_MAX},
      thumb_(CS_ARCH_ARM, Mode(CS_MODE_THUMB | CS_MODE_V8 | CS_MODE_MCLASS)),
      thumbOfOthers_(CS_ARCH_ARM, Mode(CS_MODE_THUMB | CS_MODE_V8)),
      arm_(CS_ARCH_ARM, Mode(CS_MODE_ARM | CS_MODE_V8)),
      kept_(KeptCount(codeBytes)),
      keptArm_(KeptCount(codeBytes)) {}

CodeInstruction ArmDecoder::Decode(std::string_view bytes, uint64_t address) {
  return (address & 1) != 0 ? DecodeThumb(bytes) : DecodeArm(bytes);
}

CodeInstruction ArmDecoder::Disassemble(std::string_view bytes, bool isThumb) {
  CapstoneSession& session = isThumb ? thumb_ : arm_;
  const cs_insn* decoded = session.Decode(bytes, kOrigin);
  if (decoded == nullptr && isThumb) {
    decoded = thumbOfOthers_.Decode(bytes, kOrigin);
  }
  const bool isWhole = decoded != nullptr && decoded->size == bytes.size();
  return isWhole ? TranslateArm(*decoded, kOrigin, isThumb)
                 : UnknownOf(static_cast<uint8_t>(bytes.size()));
}

size_t ArmDecoder::SlotOf(uint32_t encoding) const {
  return static_cast<size_t>(encoding * 0x9E3779B97F4A7C15U >> 40) & (kept_.size() - 1);
}

CodeInstruction ArmDecoder::DecodeThumb(std::string_view bytes) {
  ByteReader reader(bytes, ByteOrder::kLittle);
  const uint16_t first = reader.Half();
  const uint16_t second = IsLongThumb(first) ? reader.Half() : 0;
  if (reader.Failed()) {
    return UnknownOf(static_cast<uint8_t>(std::clamp<size_t>(bytes.size(), 1, 2)));
  }
  const uint8_t length = IsLongThumb(first) ? 4 : 2;
  if (std::optional<CodeInstruction> direct = DirectThumb(first, second)) {
    direct->length = length;
    return *direct;
  }
  const uint32_t encoding = uint32_t{first} << 16 | second;
  Kept& kept = kept_[SlotOf(encoding)];
  if (kept.isFilled && kept.encoding == encoding) {
    return kept.instruction;
  }
  const std::optional<CodeInstruction> special = SpecialThumb(first, second);
  kept = {encoding, true, special ? *special : Disassemble(bytes.substr(0, length), true)};
  kept.instruction.length = length;
  kept.instruction.usesFloatingPoint =
      kept.instruction.usesFloatingPoint || IsThumbFloatingPoint(first, second);
  return kept.instruction;
}

CodeInstruction ArmDecoder::DecodeArm(std::string_view bytes) {
  constexpr uint8_t kLength = 4;
  ByteReader reader(bytes, ByteOrder::kLittle);
  const uint32_t word = reader.Word();
  if (reader.Failed()) {
    return UnknownOf(static_cast<uint8_t>(std::max<size_t>(bytes.size(), 1)));
  }
  Kept& kept = keptArm_[SlotOf(word) & (keptArm_.size() - 1)];
  if (!kept.isFilled || kept.encoding != word) {
    kept = {word, true, Disassemble(bytes.substr(0, kLength), false)};
    if (word == kArmNothing || word == kArmNothingOfOld) {
      kept.instruction.operation = CodeOperation::kPadding;
    }
    kept.instruction.usesFloatingPoint = IsArmFloatingPoint(word);
  }
  return kept.instruction;
}

}  // namespace velkor
