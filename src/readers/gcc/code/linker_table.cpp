#include "readers/gcc/code/linker_table.h"

#include <algorithm>

namespace velkor {
namespace {

constexpr uint32_t kAddends = 4;         // type of a section of relocations with addends
constexpr uint32_t kWithoutAddends = 9;  // and without
constexpr uint32_t kDynamicSymbols = 11;

// The relocations of machines that add where the program is loaded.
bool IsRelative(uint16_t machine, uint32_t type) {
  return (machine == ELF_X86_64 && type == 8) || (machine == ELF_ARM && type == 23) ||
         (machine == ELF_AARCH64 && type == 1027);
}

}  // namespace

LinkerTable::LinkerTable(const ElfFile& elf)
    : elf_(elf), order_(elf.Order()), width_(elf.AddressSize()) {
  for (const ElfSection& section : elf.Sections()) {
    if (section.IsLoaded() && section.name.starts_with(".got") && !section.bytes.empty()) {
      parts_.push_back({section.address, section.bytes});
    }
  }
  std::ranges::stable_sort(parts_, {}, &Part::address);
  for (const ElfSection& section : elf.Sections()) {
    if (section.IsLoaded() && !parts_.empty() &&
        (section.type == kAddends || section.type == kWithoutAddends)) {
      ReadChanges(elf, section);
    }
  }
  std::ranges::stable_sort(changes_, {}, &Change::address);
}

const LinkerTable::Part* LinkerTable::PartAt(uint64_t address) const {
  const auto next = std::ranges::upper_bound(parts_, address, {}, &Part::address);
  if (next == parts_.begin()) {
    return nullptr;
  }
  const Part& part = *std::prev(next);
  return address - part.address < part.bytes.size() ? &part : nullptr;
}

void LinkerTable::ReadChanges(const ElfFile& elf, const ElfSection& section) {
  const bool hasAddends = section.type == kAddends;
  const size_t size = width_ * (hasAddends ? 3 : 2);
  const bool hasSymbols =
      section.link < elf.Sections().size() && elf.Sections()[section.link].type == kDynamicSymbols;
  ByteReader reader(section.bytes, order_);
  for (size_t count = section.bytes.size() / size; count > 0; --count) {
    Change change;
    change.address = reader.Unsigned(width_);
    const uint64_t info = reader.Unsigned(width_);
    const uint64_t addend = hasAddends ? static_cast<uint64_t>(reader.Signed(width_)) : 0;
    const uint64_t number = elf.Is64() ? info >> 32 : info >> 8;
    const auto type = static_cast<uint32_t>(elf.Is64() ? info & UINT32_MAX : info & 0xFF);
    if (PartAt(change.address) == nullptr) {
      continue;
    }
    change.isKnown = number != 0 ? hasSymbols : IsRelative(elf.Machine(), type) && hasAddends;
    change.symbols = number != 0 && hasSymbols ? section.link : 0;
    change.number = number;
    change.addend = addend;
    changes_.push_back(change);
  }
}

// Of a symbol of the table for dynamic linking; none where the table does not hold it.
std::optional<LinkerTable::Word> LinkerTable::WordOf(const Change& change) const {
  const ElfSection& symbols = elf_.Sections()[change.symbols];
  const uint64_t size = elf_.Is64() ? 24 : 16;
  if (change.number >= symbols.bytes.size() / size || symbols.link >= elf_.Sections().size()) {
    return std::nullopt;
  }
  ByteReader reader(symbols.bytes, order_, change.number * size);
  const uint32_t name = reader.Word();
  uint64_t value = elf_.Is64() ? 0 : reader.Word();
  if (!elf_.Is64()) {
    reader.Word();  // its size
  }
  reader.Half();  // kind and visibility
  const uint16_t section = reader.Half();
  value = elf_.Is64() ? reader.Unsigned(8) : value;
  if (section != 0) {
    return Word{{}, value + change.addend};
  }
  const std::string_view names = elf_.Sections()[symbols.link].bytes;
  const std::string_view rest = names.substr(std::min<size_t>(name, names.size()));
  const std::string_view import = rest.substr(0, rest.find('\0'));
  return import.empty() ? std::nullopt : std::optional(Word{import, 0});
}

std::optional<LinkerTable::Word> LinkerTable::At(uint64_t address) const {
  const Part* part = PartAt(address);
  if (part == nullptr) {
    return std::nullopt;
  }
  const auto change = std::ranges::lower_bound(changes_, address, {}, &Change::address);
  if (change != changes_.end() && change->address == address) {
    if (!change->isKnown) {
      return std::nullopt;
    }
    return change->symbols != 0 ? WordOf(*change) : std::optional(Word{{}, change->addend});
  }
  ByteReader reader(part->bytes, order_, address - part->address);
  const uint64_t value = reader.Unsigned(width_);
  return reader.Failed() ? std::nullopt : std::optional(Word{{}, value});
}

}  // namespace velkor
