#include "readers/gcc/program_target.h"

#include <algorithm>
#include <map>
#include <string_view>

#include "readers/gcc/byte_reader.h"

namespace velkor {
namespace {

// Build attributes by tag: numbers, and texts that follow them in the section.
struct Attributes {
  std::map<uint64_t, uint64_t> numbers;
  std::map<uint64_t, std::string_view> texts;

  uint64_t Number(uint64_t tag) const {
    const auto found = numbers.find(tag);
    return found == numbers.end() ? 0 : found->second;
  }
  std::string_view Text(uint64_t tag) const {
    const auto found = texts.find(tag);
    return found == texts.end() ? std::string_view() : found->second;
  }
};

constexpr uint64_t kWholeFile = 1;
constexpr uint64_t kArmRawCpu = 4;
constexpr uint64_t kArmCpu = 5;
constexpr uint64_t kArmCompatibility = 32;

using IsText = bool (*)(uint64_t tag);

bool IsTextOfArm(uint64_t tag) {
  return tag == kArmRawCpu || tag == kArmCpu || (tag > kArmCompatibility && tag % 2 != 0);
}

bool IsTextOfRiscV(uint64_t tag) {
  return tag % 2 != 0;
}

// Of the whole file: those of sections and symbols are passed over.
void ReadVendor(ByteReader reader, size_t end, IsText isText, Attributes& attributes) {
  while (!reader.Failed() && reader.Position() < end) {
    const size_t start = reader.Position();
    const uint64_t scope = reader.VariableUnsigned();
    const size_t scopeEnd = start + reader.Word();
    if (scopeEnd <= reader.Position() || scopeEnd > end) {
      return;
    }
    while (scope == kWholeFile && !reader.Failed() && reader.Position() < scopeEnd) {
      const uint64_t tag = reader.VariableUnsigned();
      if (tag == kArmCompatibility && isText == IsTextOfArm) {
        reader.VariableUnsigned();
        reader.Text();
      } else if (isText(tag)) {
        attributes.texts[tag] = reader.Text();
      } else {
        attributes.numbers[tag] = reader.VariableUnsigned();
      }
    }
    reader.Skip(scopeEnd - std::min(scopeEnd, reader.Position()));
  }
}

Attributes ReadAttributes(const ElfFile& elf, std::string_view section, std::string_view vendor,
                          IsText isText) {
  Attributes attributes;
  const ElfSection* found = elf.FindSection(section);
  if (found == nullptr) {
    return attributes;
  }
  ByteReader reader(found->bytes, elf.Order());
  if (reader.Byte() != 'A') {
    return attributes;
  }
  while (!reader.Failed() && !reader.AtEnd()) {
    const size_t start = reader.Position();
    const size_t end = start + reader.Word();
    if (end <= reader.Position() || end > found->bytes.size()) {
      break;
    }
    if (reader.Text() == vendor) {
      ReadVendor(reader, end, isText, attributes);
    }
    reader = ByteReader(found->bytes, elf.Order(), end);
  }
  return attributes;
}

std::string ArmTarget(const ElfFile& elf) {
  constexpr uint64_t kArchitecture = 6;
  constexpr uint64_t kProfile = 7;
  constexpr uint64_t kFloatingPoint = 10;
  constexpr uint64_t kVectors = 48;
  const Attributes attributes = ReadAttributes(elf, ".ARM.attributes", "aeabi", IsTextOfArm);
  const bool hasRegisters =
      attributes.Number(kFloatingPoint) != 0 || attributes.Number(kVectors) != 0;
  switch (attributes.Number(kArchitecture)) {
    case 11:
    case 12:
      return "cortex-m0";
    case 10:
      return attributes.Number(kProfile) == 'M' ? "cortex-m3" : "arm";
    case 13:
      return hasRegisters ? "cortex-m4f" : "cortex-m4";
    case 16:
      return "cortex-m23";
    case 17:
      return hasRegisters ? "cortex-m33f" : "cortex-m33";
    case 21:
      return hasRegisters ? "cortex-m55f" : "cortex-m55";
    default:
      return attributes.numbers.empty() ? "" : "arm";
  }
}

// "rv32i2p1_m2p0_c2p0_zicsr2p0" is "rv32imc".
std::string RiscVTarget(const ElfFile& elf) {
  constexpr uint64_t kArchitecture = 5;
  const std::string_view told =
      ReadAttributes(elf, ".riscv.attributes", "riscv", IsTextOfRiscV).Text(kArchitecture);
  const std::string_view width = elf.Is64() ? "rv64" : "rv32";
  if (!told.starts_with(width)) {
    return {};
  }
  std::string target(width);
  bool isNew = true;  // an extension begins
  for (size_t i = width.size(); i < told.size(); ++i) {
    const char c = told[i];
    if (c == '_') {
      isNew = true;
    } else if (isNew && (c == 'z' || c == 's' || c == 'x')) {
      i = std::min(told.find('_', i), told.size()) - 1;
    } else if (c >= 'a' && c <= 'z' && c != 'p') {
      target += c;
      isNew = false;
    }
  }
  return target;
}

}  // namespace

std::string TargetOf(const ElfFile& elf) {
  switch (elf.Machine()) {
    case ELF_ARM:
      return ArmTarget(elf);
    case ELF_RISCV:
      return RiscVTarget(elf);
    case ELF_AVR:
      return "avr";
    case ELF_AARCH64:
      return "aarch64";
    case ELF_X86_64:
      return "x86-64";
    default:
      return {};
  }
}

}  // namespace velkor
