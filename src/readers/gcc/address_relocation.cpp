#include "readers/gcc/address_relocation.h"

#include <algorithm>
#include <string_view>

#include "readers/gcc/byte_reader.h"

namespace velkor {
namespace {

struct AddressForm {
  uint16_t machine;
  uint32_t type;
  uint8_t ahead;    // what the machine counts distances from, behind the relocated bytes' start
  uint8_t width;    // of an addend that lies in the bytes
  bool inCodeOnly;  // in data it is a distance, as tables of jumps have them
};

constexpr AddressForm kAddressForms[] = {
    {ELF_ARM, 2, 0, 4, false},        // ABS32
    {ELF_ARM, 38, 0, 4, false},       // TARGET1, of .init_array
    {ELF_X86_64, 1, 0, 8, false},     // 64
    {ELF_X86_64, 10, 0, 4, false},    // 32
    {ELF_X86_64, 11, 0, 4, false},    // 32S
    {ELF_X86_64, 2, 4, 4, true},      // PC32, lea
    {ELF_AVR, 4, 0, 2, false},        // 16
    {ELF_AVR, 5, 0, 2, false},        // 16_PM
    {ELF_AARCH64, 257, 0, 8, false},  // ABS64
    {ELF_AARCH64, 258, 0, 4, false},  // ABS32
    {ELF_AARCH64, 277, 0, 4, true},   // ADD_ABS_LO12_NC
    {ELF_RISCV, 1, 0, 4, false},      // 32
    {ELF_RISCV, 2, 0, 8, false},      // 64
};

constexpr std::string_view kToldOnly[] = {".eh_frame", ".ARM.ex", ".gcc_except_table",
                                          "__patchable_function_entries", "__mcount_loc"};

}  // namespace

std::optional<int64_t> AddressInSection(const ElfFile& elf, const ElfSection& section,
                                        const ElfRelocation& relocation) {
  const auto* const form = std::ranges::find_if(kAddressForms, [&](const AddressForm& one) {
    return one.machine == elf.Machine() && one.type == relocation.type;
  });
  if (form == std::end(kAddressForms) || (form->inCodeOnly && !section.HasCode())) {
    return std::nullopt;
  }
  ByteReader bytes(section.bytes, elf.Order(), relocation.offset);
  const int64_t addend = relocation.addendInPlace ? bytes.Signed(form->width) : relocation.addend;
  // Addends of a broken file may wrap.
  return static_cast<int64_t>(static_cast<uint64_t>(addend) + static_cast<uint64_t>(form->ahead));
}

// lea of a distance: 48 or 4C, 8D, one of eight registers, the distance from behind it.
std::vector<uint64_t> OwnAddressesIn(const ElfFile& elf, const ElfSection& code) {
  std::vector<uint64_t> places;
  const std::string_view bytes = code.bytes;
  if (elf.Machine() != ELF_X86_64) {
    return places;
  }
  for (size_t at = bytes.find('\x8D', 1); at < bytes.size(); at = bytes.find('\x8D', at + 1)) {
    const bool isWide = (static_cast<uint8_t>(bytes[at - 1]) & 0xFBU) == 0x48;
    if (isWide && at + 6 <= bytes.size() && (static_cast<uint8_t>(bytes[at + 1]) & 0xC7U) == 5) {
      const int64_t distance = ByteReader(bytes, ByteOrder::kLittle, at + 2).Signed(4);
      places.push_back(at + 6 + static_cast<uint64_t>(distance));
    }
  }
  return places;
}

bool HoldsUsedAddresses(const ElfSection& section) {
  const auto begins = [&](std::string_view name) { return section.name.starts_with(name); };
  return section.IsLoaded() && std::ranges::none_of(kToldOnly, begins) &&
         std::ranges::none_of(kVectorSections, begins);
}

}  // namespace velkor
