#include "readers/gcc/code/linker_table.h"

#include <algorithm>

namespace velkor {
namespace {

constexpr uint32_t kAddends = 4;         // type of a section of relocations with addends
constexpr uint32_t kWithoutAddends = 9;  // and without
constexpr uint32_t kDynamicSymbols = 11;
constexpr size_t kMostNameLength = 4096;

// The relocations of machines that add where the program is loaded.
bool IsRelative(uint16_t machine, uint32_t type) {
  return (machine == ELF_X86_64 && type == 8) || (machine == ELF_ARM && type == 23) ||
         (machine == ELF_AARCH64 && type == 1027);
}

// One symbol of the table for dynamic linking.
struct DynamicSymbol {
  std::string_view name;
  uint64_t value = 0;
  bool isDefined = false;
};

DynamicSymbol ReadSymbol(const ElfFile& elf, const ElfSection& symbols, uint64_t number) {
  DynamicSymbol symbol;
  const uint64_t size = elf.Is64() ? 24 : 16;
  ByteReader reader(symbols.bytes, elf.Order(), number * size);
  const uint32_t name = reader.Word();
  uint64_t value = elf.Is64() ? 0 : reader.Word();
  if (!elf.Is64()) {
    reader.Word();  // its size
  }
  reader.Half();  // kind and visibility
  const uint16_t section = reader.Half();
  value = elf.Is64() ? reader.Unsigned(8) : value;
  if (reader.Failed() || symbols.link >= elf.Sections().size()) {
    return symbol;
  }
  const std::string_view names = elf.Sections()[symbols.link].bytes;
  const std::string_view rest = names.substr(std::min<size_t>(name, names.size()), kMostNameLength);
  symbol.name = rest.substr(0, rest.find('\0'));
  symbol.value = value;
  symbol.isDefined = section != 0;
  return symbol;
}

}  // namespace

LinkerTable::LinkerTable(const ElfFile& elf) : order_(elf.Order()), width_(elf.AddressSize()) {
  for (const ElfSection& section : elf.Sections()) {
    if (section.IsLoaded() && section.name.starts_with(".got") && !section.bytes.empty()) {
      parts_.push_back({section.address, section.bytes});
    }
  }
  for (const ElfSection& section : elf.Sections()) {
    if (section.IsLoaded() && !parts_.empty() &&
        (section.type == kAddends || section.type == kWithoutAddends)) {
      ReadChanges(elf, section);
    }
  }
  std::ranges::stable_sort(changes_, {}, &Change::address);
}

const LinkerTable::Part* LinkerTable::PartAt(uint64_t address) const {
  const auto found = std::ranges::find_if(parts_, [&](const Part& part) {
    return address >= part.address && address - part.address < part.bytes.size();
  });
  return found == parts_.end() ? nullptr : &*found;
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
    if (number != 0 && hasSymbols) {
      const DynamicSymbol symbol = ReadSymbol(elf, elf.Sections()[section.link], number);
      change.import = symbol.isDefined ? std::string_view() : symbol.name;
      change.value = symbol.value + addend;
      change.isKnown = symbol.isDefined || !symbol.name.empty();
    } else if (number == 0 && IsRelative(elf.Machine(), type) && hasAddends) {
      change.value = addend;
      change.isKnown = true;
    }
    changes_.push_back(change);
  }
}

std::optional<LinkerTable::Word> LinkerTable::At(uint64_t address) const {
  const Part* part = PartAt(address);
  if (part == nullptr) {
    return std::nullopt;
  }
  const auto change = std::ranges::lower_bound(changes_, address, {}, &Change::address);
  if (change != changes_.end() && change->address == address) {
    return change->isKnown ? std::optional(Word{change->import, change->value}) : std::nullopt;
  }
  ByteReader reader(part->bytes, order_, address - part->address);
  const uint64_t value = reader.Unsigned(width_);
  return reader.Failed() ? std::nullopt : std::optional(Word{{}, value});
}

}  // namespace velkor
