#include "readers/gcc/elf_file.h"

#include <algorithm>
#include <array>

namespace velkor {
namespace {

enum SectionType : uint32_t {
  SECTION_SYMBOLS = 2,
  SECTION_RELOCATIONS_WITH_ADDENDS = 4,
  SECTION_NO_BYTES = 8,
  SECTION_RELOCATIONS = 9,
  SECTION_LONG_SECTION_NUMBERS = 18,
};

constexpr uint64_t kCompressedFlag = 0x800;
constexpr size_t kIdentificationSize = 16;
constexpr uint16_t kFirstReservedSection = 0xFF00;
constexpr uint16_t kLongSectionNumber = 0xFFFF;
// Names may share bytes; a file in which all of them are the same long one must not cost its
// square.
constexpr uint64_t kNameBytesPerFileByte = 16;

// The part of the file, none when it is not within it.
std::string_view PartOf(std::string_view bytes, uint64_t offset, uint64_t length) {
  const bool within = offset <= bytes.size() && length <= bytes.size() - offset;
  return within ? bytes.substr(static_cast<size_t>(offset), static_cast<size_t>(length))
                : std::string_view();
}

}  // namespace

struct ElfFile::Header {
  uint64_t segmentTable = 0;
  uint64_t sectionTable = 0;
  uint16_t segmentSize = 0;
  uint32_t segmentCount = 0;
  uint16_t sectionSize = 0;
  uint64_t sectionCount = 0;
  uint32_t nameSection = 0;
};

ElfFile::ElfFile(std::string_view bytes)
    : bytes_(bytes), nameBytesLeft_(bytes.size() * kNameBytesPerFileByte) {
  if (!ReadIdentification()) {
    return;
  }
  const Header header = ReadHeader();
  ReadSections(header);
  ReadSegments(header);
  ReadSymbols();
}

bool ElfFile::ReadIdentification() {
  constexpr std::string_view kMagic =
      "\x7F"
      "ELF";
  if (!bytes_.starts_with(kMagic)) {
    faults_.Add(BinaryFault::kNotElf);
    return false;
  }
  isElf_ = true;
  if (bytes_.size() < kIdentificationSize) {
    faults_.Add(BinaryFault::kHeaderCut);
    return false;
  }
  const char wordClass = bytes_[4];
  const char order = bytes_[5];
  if ((wordClass != 1 && wordClass != 2) || (order != 1 && order != 2)) {
    faults_.Add(BinaryFault::kUnknownClass);
    return false;
  }
  is64_ = wordClass == 2;
  order_ = order == 1 ? ByteOrder::kLittle : ByteOrder::kBig;
  return true;
}

ElfFile::Header ElfFile::ReadHeader() {
  ByteReader reader(bytes_, order_, kIdentificationSize);
  Header header;
  type_ = reader.Half();
  machine_ = reader.Half();
  reader.Word();  // version
  entry_ = Address(reader);
  header.segmentTable = Address(reader);
  header.sectionTable = Address(reader);
  flags_ = reader.Word();
  reader.Half();  // size of the header
  header.segmentSize = reader.Half();
  header.segmentCount = reader.Half();
  header.sectionSize = reader.Half();
  header.sectionCount = reader.Half();
  header.nameSection = reader.Half();
  if (reader.Failed()) {
    faults_.Add(BinaryFault::kHeaderCut);
    return {};
  }
  return header;
}

void ElfFile::ReadSection(ByteReader& reader) {
  ElfSection section;
  nameOffsets_.push_back(reader.Word());
  section.type = reader.Word();
  section.flags = Address(reader);
  section.address = Address(reader);
  offsets_.push_back(Address(reader));
  section.size = Address(reader);
  section.link = reader.Word();
  section.info = reader.Word();
  Address(reader);  // alignment
  section.entrySize = Address(reader);
  sections_.push_back(section);
}

void ElfFile::ReadSections(const Header& header) {
  const size_t least = is64_ ? 64 : 40;
  if (header.sectionTable == 0) {
    return;
  }
  if (header.sectionSize < least || PartOf(bytes_, header.sectionTable, least).empty()) {
    faults_.Add(BinaryFault::kSectionTableCut);
    return;
  }
  // Numbers that the header has no room for stand in the first section.
  ByteReader first(bytes_, order_, header.sectionTable);
  ReadSection(first);
  const uint64_t count = header.sectionCount != 0 ? header.sectionCount : sections_[0].size;
  const uint64_t held = (bytes_.size() - header.sectionTable) / header.sectionSize;
  if (count > held) {
    faults_.Add(BinaryFault::kSectionTableCut);
  }
  for (uint64_t i = 1; i < std::min(count, held); ++i) {
    ByteReader reader(bytes_, order_, header.sectionTable + i * header.sectionSize);
    ReadSection(reader);
  }
  FindBytes();
  NameSections(header.nameSection == kLongSectionNumber ? sections_[0].link : header.nameSection);
  for (uint32_t i = 0; i < sections_.size(); ++i) {
    const uint32_t type = sections_[i].type;
    if (type == SECTION_RELOCATIONS || type == SECTION_RELOCATIONS_WITH_ADDENDS) {
      relocationSections_.push_back({sections_[i].info, i});
    }
  }
  std::ranges::stable_sort(relocationSections_, {}, &RelocationSection::target);
}

// Sections of a whole file share no bytes. Where they do, reading each would cost more than the
// file has.
void ElfFile::FindBytes() {
  uint64_t left = bytes_.size();
  for (size_t i = 1; i < sections_.size(); ++i) {
    ElfSection& section = sections_[i];
    const std::string_view part = PartOf(bytes_, offsets_[i], section.size);
    if (section.type == 0 || section.type == SECTION_NO_BYTES) {
      section.state = ElfSectionState::kAbsent;
    } else if (part.size() != section.size) {
      section.state = ElfSectionState::kUnusable;
      faults_.Add(BinaryFault::kOutsideFile);
    } else if (part.size() > left) {
      section.state = ElfSectionState::kUnusable;
      faults_.Add(BinaryFault::kOverlaps);
    } else {
      left -= part.size();
      const bool compressed = (section.flags & kCompressedFlag) != 0;
      section.state = compressed ? ElfSectionState::kCompressed : ElfSectionState::kPresent;
      section.bytes = compressed ? std::string_view() : part;
    }
  }
  offsets_ = {};
}

void ElfFile::NameSections(uint32_t nameSection) {
  const std::string_view names = BytesOf(nameSection);
  for (size_t i = 1; i < sections_.size(); ++i) {
    sections_[i].name = Name(names, nameOffsets_[i], "");
    // An older form of compression, which no flag tells.
    if (sections_[i].name.starts_with(".zdebug_") &&
        sections_[i].state == ElfSectionState::kPresent) {
      sections_[i].state = ElfSectionState::kCompressed;
      sections_[i].bytes = {};
    }
  }
  nameOffsets_ = {};
}

void ElfFile::ReadSegments(const Header& header) {
  const size_t least = is64_ ? 56 : 32;
  const uint32_t count = header.segmentCount == kLongSectionNumber && !sections_.empty()
                             ? sections_[0].info
                             : header.segmentCount;
  if (header.segmentTable == 0 || count == 0) {
    return;
  }
  const uint64_t tableSize = uint64_t{count} * header.segmentSize;
  const std::string_view table = PartOf(bytes_, header.segmentTable, tableSize);
  if (header.segmentSize < least || table.empty()) {
    faults_.Add(BinaryFault::kSegmentTableCut);
    return;
  }
  for (uint32_t i = 0; i < count; ++i) {
    ByteReader reader(table, order_, uint64_t{i} * header.segmentSize);
    ElfSegment segment;
    segment.type = reader.Word();
    if (is64_) {
      reader.Word();  // flags, which stand later in 32 bits
    }
    const uint64_t offset = Address(reader);
    segment.address = Address(reader);
    segment.physicalAddress = Address(reader);
    const uint64_t fileSize = Address(reader);
    segment.memorySize = Address(reader);
    segment.bytes = PartOf(bytes_, offset, fileSize);
    if (segment.bytes.size() != fileSize) {
      faults_.Add(BinaryFault::kOutsideFile);
    }
    segments_.push_back(segment);
  }
}

std::string_view ElfFile::Name(std::string_view names, uint64_t offset, std::string_view where) {
  if (offset == 0) {
    return {};
  }
  const std::string_view rest = names.substr(std::min<uint64_t>(offset, names.size()));
  const size_t length = rest.substr(0, nameBytesLeft_).find('\0');
  if (length == std::string_view::npos) {
    faults_.Add(BinaryFault::kNamesTooLong, where);
    nameBytesLeft_ -= std::min<uint64_t>(nameBytesLeft_, rest.size());
    return {};
  }
  nameBytesLeft_ -= length;
  return rest.substr(0, length);
}

uint32_t ElfFile::SectionOfSymbol(uint16_t number, uint32_t longNumber) {
  if (number >= kFirstReservedSection && number != kLongSectionNumber) {
    return 0xFFFF0000U | number;
  }
  const uint32_t section = number == kLongSectionNumber ? longNumber : number;
  if (section < sections_.size()) {
    return section;
  }
  faults_.Add(BinaryFault::kSymbolSection, sections_[symbolSection_].name);
  return ElfSymbol::kNoSection;
}

ElfSymbol ElfFile::ReadSymbol(ByteReader& reader, std::string_view names,
                              ByteReader& longSections) {
  ElfSymbol symbol;
  const uint32_t name = reader.Word();
  if (!is64_) {
    symbol.value = reader.Word();
    symbol.size = reader.Word();
  }
  const uint8_t info = reader.Byte();
  reader.Byte();  // visibility
  const uint16_t section = reader.Half();
  if (is64_) {
    symbol.value = reader.Unsigned(8);
    symbol.size = reader.Unsigned(8);
  }
  symbol.name = Name(names, name, sections_[symbolSection_].name);
  symbol.type = static_cast<ElfSymbolType>(info & 15U);
  symbol.binding = static_cast<ElfBinding>(info >> 4);
  symbol.section = SectionOfSymbol(section, longSections.Word());
  return symbol;
}

void ElfFile::ReadSymbols() {
  const auto found = std::ranges::find_if(sections_, [](const ElfSection& section) {
    return section.type == SECTION_SYMBOLS && section.state == ElfSectionState::kPresent;
  });
  if (found == sections_.end()) {
    return;
  }
  symbolSection_ = static_cast<uint32_t>(found - sections_.begin());
  const size_t size = is64_ ? 24 : 16;
  if (found->entrySize != size || found->bytes.size() % size != 0) {
    faults_.Add(BinaryFault::kEntrySize, found->name);
    if (found->entrySize != size) {
      return;
    }
  }
  const auto longNumbers = std::ranges::find_if(sections_, [this](const ElfSection& section) {
    return section.type == SECTION_LONG_SECTION_NUMBERS && section.link == symbolSection_;
  });
  ByteReader longSections(longNumbers == sections_.end() ? "" : longNumbers->bytes, order_);
  const std::string_view names = BytesOf(found->link);
  ByteReader reader(found->bytes, order_);
  const size_t count = found->bytes.size() / size;
  symbols_.reserve(count);
  for (size_t i = 0; i < count; ++i) {
    symbols_.push_back(ReadSymbol(reader, names, longSections));
  }
}

std::string_view ElfFile::BytesOf(uint32_t section) const {
  return section < sections_.size() ? sections_[section].bytes : std::string_view();
}

const ElfSection* ElfFile::FindSection(std::string_view name) const {
  const auto found = std::ranges::find(sections_, name, &ElfSection::name);
  return found == sections_.end() ? nullptr : &*found;
}

std::vector<ElfRelocation> ElfFile::RelocationsOf(uint32_t section, BinaryFaults& faults) const {
  std::vector<ElfRelocation> relocations;
  auto one = std::ranges::lower_bound(relocationSections_, section, {}, &RelocationSection::target);
  for (; one != relocationSections_.end() && one->target == section; ++one) {
    const ElfSection& table = sections_[one->section];
    const bool addends = table.type == SECTION_RELOCATIONS_WITH_ADDENDS;
    const size_t size = AddressSize() * (addends ? 3 : 2);
    if (table.entrySize != size || table.link != symbolSection_) {
      faults.Add(BinaryFault::kEntrySize, table.name);
      continue;
    }
    if (table.bytes.size() % size != 0) {
      faults.Add(BinaryFault::kEntrySize, table.name);
    }
    ByteReader reader(table.bytes, order_);
    for (size_t count = table.bytes.size() / size; count > 0; --count) {
      ElfRelocation relocation;
      relocation.offset = Address(reader);
      const uint64_t info = Address(reader);
      const uint64_t symbol = is64_ ? info >> 32 : info >> 8;
      relocation.type = static_cast<uint32_t>(is64_ ? info & 0xFFFFFFFF : info & 0xFF);
      relocation.addend = addends ? reader.Signed(AddressSize()) : 0;
      relocation.addendInPlace = !addends;
      relocation.symbol = static_cast<uint32_t>(symbol);
      if (symbol < symbols_.size()) {
        relocations.push_back(relocation);
      } else {
        faults.Add(BinaryFault::kRelocationSymbol, table.name);
      }
    }
  }
  std::ranges::stable_sort(relocations, {}, &ElfRelocation::offset);
  return relocations;
}

}  // namespace velkor
