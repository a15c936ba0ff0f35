#include "readers/gcc/branch_relocation.h"

#include <algorithm>

#include "readers/gcc/byte_reader.h"

namespace velkor {
namespace {

struct BranchPlace {
  std::string_view bytes;
  uint64_t offset;
  ByteOrder order;

  uint32_t Half(uint64_t distance = 0) const {
    return ByteReader(bytes, order, offset + distance).Half();
  }
  uint32_t Word(uint64_t distance = 0) const {
    return ByteReader(bytes, order, offset + distance).Word();
  }
};

// isJump, and as addend what the instruction's own bytes hold. None where it is no branch.
using BranchDecoder = std::optional<BranchRelocation> (*)(const BranchPlace& place);

std::optional<BranchRelocation> Arm(const BranchPlace& place) {
  const uint32_t word = place.Word();
  const bool linksAndChangesState = word >> 28 == 0xF;
  const bool links = linksAndChangesState || (word >> 24 & 1U) != 0;
  return BranchRelocation{!links, ByteReader::Extended(word, 24) * 4};
}

std::optional<BranchRelocation> ThumbWide(const BranchPlace& place) {
  const uint32_t high = place.Half();
  const uint32_t low = place.Half(2);
  const uint32_t sign = high >> 10 & 1U;
  const uint32_t first = (low >> 13 & 1U) ^ sign ^ 1U;
  const uint32_t second = (low >> 11 & 1U) ^ sign ^ 1U;
  const uint32_t halves =
      sign << 23 | first << 22 | second << 21 | (high & 0x3FFU) << 11 | (low & 0x7FFU);
  return BranchRelocation{(low & 0x4000U) == 0, ByteReader::Extended(halves, 24) * 2};
}

std::optional<BranchRelocation> ThumbConditional(const BranchPlace& place) {
  const uint32_t high = place.Half();
  const uint32_t low = place.Half(2);
  const uint32_t halves = (high >> 10 & 1U) << 19 | (low >> 11 & 1U) << 18 |
                          (low >> 13 & 1U) << 17 | (high & 0x3FU) << 11 | (low & 0x7FFU);
  return BranchRelocation{true, ByteReader::Extended(halves, 20) * 2};
}

std::optional<BranchRelocation> ThumbShort(const BranchPlace& place) {
  return BranchRelocation{true, ByteReader::Extended(place.Half(), 11) * 2};
}

std::optional<BranchRelocation> ThumbShortConditional(const BranchPlace& place) {
  return BranchRelocation{true, ByteReader::Extended(place.Half(), 8) * 2};
}

// The two bytes right before the distance; one, behind a zero, where there are no two.
uint32_t X86Opcode(const BranchPlace& place) {
  const bool within = place.offset >= 2 && place.offset <= place.bytes.size();
  ByteReader reader(place.bytes, ByteOrder::kBig, within ? place.offset - 2 : 0);
  return within ? reader.Half() : place.offset == 1 ? reader.Byte() : 0U;
}

// E8 calls, E9 jumps, 0F 80 to 0F 8F jump on a condition.
std::optional<BranchRelocation> X86(const BranchPlace& place) {
  const uint32_t opcode = X86Opcode(place);
  const uint32_t last = opcode & 0xFFU;
  if (last == 0xE8) {
    return BranchRelocation{false, 0};
  }
  if (last == 0xE9 || (opcode & 0xFFF0U) == 0x0F80) {
    return BranchRelocation{true, 0};
  }
  return std::nullopt;
}

// FF 15 and FF 25 call and jump through the address that the linker keeps of the symbol. With
// another relocation the same instructions go where the symbol's own bytes say.
std::optional<BranchRelocation> X86Kept(const BranchPlace& place) {
  const uint32_t opcode = X86Opcode(place);
  if (opcode == 0xFF15 || opcode == 0xFF25) {
    return BranchRelocation{opcode == 0xFF25, 0};
  }
  return std::nullopt;
}

// Two instructions; the second jumps, and register 0 keeps no return address.
std::optional<BranchRelocation> RiscvPair(const BranchPlace& place) {
  return BranchRelocation{(place.Word(4) >> 7 & 31U) == 0, 0};
}

std::optional<BranchRelocation> RiscvSingle(const BranchPlace& place) {
  return BranchRelocation{(place.Word() >> 7 & 31U) == 0, 0};
}

std::optional<BranchRelocation> AvrLong(const BranchPlace& place) {
  return BranchRelocation{(place.Half() & 2U) == 0, 0};
}

std::optional<BranchRelocation> AvrShort(const BranchPlace& place) {
  return BranchRelocation{(place.Half() & 0x1000U) == 0, 0};
}

std::optional<BranchRelocation> Call(const BranchPlace& /*place*/) {
  return BranchRelocation{false, 0};
}

std::optional<BranchRelocation> Jump(const BranchPlace& /*place*/) {
  return BranchRelocation{true, 0};
}

struct BranchForm {
  uint16_t machine;
  uint32_t type;
  int64_t ahead;  // what the machine counts distances from, behind the relocated bytes' start
  BranchDecoder decode;
};

constexpr BranchForm kBranchForms[] = {
    {ELF_ARM, 10, 4, ThumbWide},               // THM_CALL
    {ELF_ARM, 27, 8, Arm},                     // PLT32
    {ELF_ARM, 28, 8, Arm},                     // CALL
    {ELF_ARM, 29, 8, Arm},                     // JUMP24
    {ELF_ARM, 30, 4, ThumbWide},               // THM_JUMP24
    {ELF_ARM, 51, 4, ThumbConditional},        // THM_JUMP19
    {ELF_ARM, 102, 4, ThumbShort},             // THM_JUMP11
    {ELF_ARM, 103, 4, ThumbShortConditional},  // THM_JUMP8
    {ELF_X86_64, 2, 4, X86},                   // PC32, which data has as well
    {ELF_X86_64, 4, 4, X86},                   // PLT32
    {ELF_X86_64, 9, 4, X86Kept},               // GOTPCREL, likewise
    {ELF_X86_64, 41, 4, X86Kept},              // GOTPCRELX
    {ELF_AVR, 3, 0, AvrShort},                 // 13_PCREL
    {ELF_AVR, 18, 0, AvrLong},                 // CALL
    {ELF_AARCH64, 279, 0, Jump},               // TSTBR14
    {ELF_AARCH64, 280, 0, Jump},               // CONDBR19
    {ELF_AARCH64, 282, 0, Jump},               // JUMP26
    {ELF_AARCH64, 283, 0, Call},               // CALL26
    {ELF_RISCV, 17, 0, RiscvSingle},           // JAL
    {ELF_RISCV, 18, 0, RiscvPair},             // CALL
    {ELF_RISCV, 19, 0, RiscvPair},             // CALL_PLT
};

}  // namespace

bool KnowsBranchesOf(uint16_t machine) {
  return std::ranges::find(kBranchForms, machine, &BranchForm::machine) != std::end(kBranchForms);
}

std::optional<BranchRelocation> ReadBranch(const ElfFile& elf, std::string_view bytes,
                                           const ElfRelocation& relocation) {
  const auto* const form = std::ranges::find_if(kBranchForms, [&](const BranchForm& one) {
    return one.machine == elf.Machine() && one.type == relocation.type;
  });
  if (form == std::end(kBranchForms)) {
    return std::nullopt;
  }
  std::optional<BranchRelocation> branch = form->decode({bytes, relocation.offset, elf.Order()});
  if (branch) {
    // Addends of a broken file may wrap.
    const int64_t addend = relocation.addendInPlace ? branch->addend : relocation.addend;
    branch->addend =
        static_cast<int64_t>(static_cast<uint64_t>(addend) + static_cast<uint64_t>(form->ahead));
  }
  return branch;
}

}  // namespace velkor
