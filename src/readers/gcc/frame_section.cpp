#include "readers/gcc/frame_section.h"

#include <algorithm>

namespace velkor {
namespace {

// Encodings of pointers: how wide, and what they are counted from.
enum PointerEncoding : uint8_t {
  POINTER_WIDTH = 0x0F,
  POINTER_BASE = 0x70,
  POINTER_FROM_ITSELF = 0x10,
  POINTER_INDIRECT = 0x80,
  POINTER_OMITTED = 0xFF,
};

// A number in one of the widths of pointer encodings; none where there is no such width.
std::optional<int64_t> ReadEncoded(ByteReader& reader, uint8_t encoding, size_t addressSize) {
  switch (encoding & POINTER_WIDTH) {
    case 0x00:
      return static_cast<int64_t>(reader.Unsigned(addressSize));
    case 0x01:
      return static_cast<int64_t>(reader.VariableUnsigned());
    case 0x02:
      return static_cast<int64_t>(reader.Unsigned(2));
    case 0x03:
      return static_cast<int64_t>(reader.Unsigned(4));
    case 0x04:
    case 0x0C:
      return reader.Signed(8);
    case 0x09:
      return reader.VariableSigned();
    case 0x0A:
      return reader.Signed(2);
    case 0x0B:
      return reader.Signed(4);
    default:
      return std::nullopt;
  }
}

}  // namespace

FrameSectionReader::FrameSectionReader(const ElfFile& elf, uint32_t section, Kind kind,
                                       BinaryFaults& faults)
    : elf_(elf), section_(elf.Sections()[section]), kind_(kind), faults_(faults) {
  if (elf.IsRelocatable()) {
    relocations_ = elf.RelocationsOf(section, faults);
  }
}

void FrameSectionReader::Read(std::vector<FunctionFrame>& frames) {
  const std::vector<Entry> entries = FindEntries();
  for (const Entry& entry : entries) {
    if (IsCommon(entry)) {
      const Common common = ReadCommon(entry);
      if (!common.isUsable) {
        faults_.Add(BinaryFault::kFrameEntryKind, section_.name);
      }
      commons_.emplace(entry.start, common);
    }
  }
  for (const Entry& entry : entries) {
    if (!IsCommon(entry)) {
      ReadFunction(entry, frames);
    }
  }
}

// An entry of length 0 is what the start files end the section with.
std::vector<FrameSectionReader::Entry> FrameSectionReader::FindEntries() {
  constexpr uint32_t kLongLength = 0xFFFFFFFF;
  std::vector<Entry> entries;
  ByteReader reader(section_.bytes, elf_.Order());
  while (!reader.AtEnd()) {
    Entry entry;
    entry.start = reader.Position();
    uint64_t length = reader.Word();
    if (length == kLongLength) {
      length = reader.Unsigned(8);
      entry.width = kind_ == Kind::kDebugFrames ? 8 : 4;
    }
    entry.identifier = reader.Position();
    reader.Skip(length);
    entry.end = reader.Position();
    if (reader.Failed() || (length != 0 && length < entry.width)) {
      faults_.Add(BinaryFault::kFrameEntryCut, section_.name);
    } else if (length != 0) {
      entries.push_back(entry);
    }
  }
  return entries;
}

ByteReader FrameSectionReader::ReaderAt(const Entry& entry, size_t position) const {
  return {section_.bytes.substr(0, entry.end), elf_.Order(), position};
}

bool FrameSectionReader::IsCommon(const Entry& entry) const {
  const uint64_t identifier = ReaderAt(entry, entry.identifier).Unsigned(entry.width);
  const uint64_t ones = entry.width == 8 ? UINT64_MAX : UINT32_MAX;
  return identifier == (kind_ == Kind::kExceptionFrames ? 0 : ones);
}

FrameSectionReader::Common FrameSectionReader::ReadCommon(const Entry& entry) {
  Common common;
  common.encoding = {elf_.Order(), elf_.AddressSize(), 1};
  ByteReader reader = ReaderAt(entry, entry.identifier + entry.width);
  const uint8_t version = reader.Byte();
  const std::string_view letters = reader.Text();
  if (version >= 4) {
    common.encoding.addressSize = reader.Byte();
    common.segmentSize = reader.Byte();
  }
  if (letters == "eh") {
    reader.Skip(elf_.AddressSize());
  }
  reader.VariableUnsigned();  // the factor of code, and rows are not placed here
  common.encoding.dataFactor = reader.VariableSigned();
  version == 1 ? reader.Skip(1) : static_cast<void>(reader.VariableUnsigned());
  const bool known = (version == 1 || version == 3 || version == 4) &&
                     common.encoding.addressSize <= 8 && common.segmentSize <= 8 &&
                     ReadAugmentation(letters, reader, common) && !reader.Failed();
  common.isUsable = known;
  if (known) {
    const std::string_view instructions = reader.Take(entry.end - reader.Position());
    common.rows = RunFrameInstructions(instructions, common.encoding, {});
    common.isUsable = common.rows.isRead;
  }
  return common;
}

bool FrameSectionReader::ReadAugmentation(std::string_view letters, ByteReader& reader,
                                          Common& common) const {
  if (letters.empty() || letters == "eh") {
    return true;
  }
  if (letters.front() != 'z') {
    return false;
  }
  common.hasAugmentationSize = true;
  const uint64_t size = reader.VariableUnsigned();
  ByteReader data(reader.Take(size), elf_.Order());
  for (const char letter : letters.substr(1)) {
    if (letter == 'R') {
      common.pointerEncoding = data.Byte();
    } else if (letter == 'L') {
      data.Byte();
    } else if (letter == 'P') {
      SkipPointer(data.Byte(), data, common);
    }
  }
  return !data.Failed();
}

void FrameSectionReader::SkipPointer(uint8_t encoding, ByteReader& reader,
                                     const Common& common) const {
  if (encoding != POINTER_OMITTED) {
    ReadEncoded(reader, encoding, common.encoding.addressSize);
  }
}

// The place that the entry names as its common one.
std::optional<uint64_t> FrameSectionReader::CommonEntryOf(const Entry& entry) const {
  const uint64_t value = ReaderAt(entry, entry.identifier).Unsigned(entry.width);
  if (kind_ == Kind::kExceptionFrames) {
    return entry.identifier - value;
  }
  const std::optional<Place> place = RelocatedPlace(entry.identifier, static_cast<int64_t>(value));
  return place ? place->offset : value;
}

// In an object, an address is what a relocation says: the section of its symbol, and a place in it.
std::optional<FrameSectionReader::Place> FrameSectionReader::RelocatedPlace(size_t position,
                                                                            int64_t inPlace) const {
  auto relocation =
      std::ranges::lower_bound(relocations_, uint64_t{position}, {}, &ElfRelocation::offset);
  for (; relocation != relocations_.end() && relocation->offset == position; ++relocation) {
    const ElfSymbol& symbol = elf_.Symbols()[relocation->symbol];
    if (symbol.section != ElfSymbol::kUndefined && symbol.section < elf_.Sections().size()) {
      const int64_t addend = relocation->addendInPlace ? inPlace : relocation->addend;
      return Place{symbol.section, symbol.value + static_cast<uint64_t>(addend)};
    }
  }
  return std::nullopt;
}

std::optional<FrameSectionReader::Place> FrameSectionReader::ReadAddress(
    ByteReader& reader, const Common& common) const {
  const size_t position = reader.Position();
  const uint8_t encoding = common.pointerEncoding;
  const std::optional<int64_t> value = ReadEncoded(reader, encoding, common.encoding.addressSize);
  const uint8_t base = encoding & POINTER_BASE;
  if (!value || reader.Failed() || (encoding & POINTER_INDIRECT) != 0 ||
      (base != 0 && base != POINTER_FROM_ITSELF)) {
    return std::nullopt;
  }
  if (elf_.IsRelocatable()) {
    return RelocatedPlace(position, *value);
  }
  const uint64_t from = base == POINTER_FROM_ITSELF ? section_.address + position : 0;
  const uint64_t address = from + static_cast<uint64_t>(*value);
  return Place{0, elf_.Is64() ? address : address & UINT32_MAX};
}

void FrameSectionReader::ReadFunction(const Entry& entry, std::vector<FunctionFrame>& frames) {
  const std::optional<uint64_t> start = CommonEntryOf(entry);
  const auto common = start ? commons_.find(*start) : commons_.end();
  if (common == commons_.end() || !common->second.isUsable) {
    faults_.Add(BinaryFault::kFrameCommonMissing, section_.name);
    return;
  }
  ByteReader reader = ReaderAt(entry, entry.identifier + entry.width);
  reader.Skip(common->second.segmentSize);
  const std::optional<Place> place = ReadAddress(reader, common->second);
  SkipPointer(common->second.pointerEncoding, reader, common->second);  // how long it is
  if (common->second.hasAugmentationSize) {
    reader.Skip(reader.VariableUnsigned());
  }
  if (!place || reader.Failed()) {
    faults_.Add(place ? BinaryFault::kFrameEntryCut : BinaryFault::kFrameAddress, section_.name);
    return;
  }
  const std::string_view instructions = reader.Take(entry.end - reader.Position());
  const FrameRows rows =
      RunFrameInstructions(instructions, common->second.encoding, common->second.rows.last);
  if (!rows.isRead) {
    faults_.Add(BinaryFault::kFrameInstruction, section_.name);
  }
  frames.push_back(
      {place->section, place->offset, static_cast<uint64_t>(rows.largest), rows.isWhole});
}

}  // namespace velkor
