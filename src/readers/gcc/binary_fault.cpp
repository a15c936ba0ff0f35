#include "readers/gcc/binary_fault.h"

#include <algorithm>
#include <array>
#include <utility>

namespace velkor {

std::string_view TextOf(BinaryFault fault) {
  static constexpr std::array<std::pair<BinaryFault, std::string_view>, 17> kTexts = {{
      {BinaryFault::kNotElf, "it is no ELF file"},
      {BinaryFault::kUnknownClass, "it is an ELF file of an unknown class or byte order"},
      {BinaryFault::kHeaderCut, "it ends within its header"},
      {BinaryFault::kSectionTableCut, "its section table is not within the file"},
      {BinaryFault::kSegmentTableCut, "its segment table is not within the file"},
      {BinaryFault::kOutsideFile, "its bytes are not within the file"},
      {BinaryFault::kOverlaps, "its bytes are those of other sections too"},
      {BinaryFault::kCompressed, "it is compressed"},
      {BinaryFault::kEntrySize, "its entries have an unknown size, or the last one is cut"},
      {BinaryFault::kSymbolSection, "a symbol lies in a section that does not exist"},
      {BinaryFault::kNamesTooLong, "a name does not end, or the names are too long"},
      {BinaryFault::kRelocationSymbol, "a relocation names a symbol that does not exist"},
      {BinaryFault::kFrameEntryCut, "an entry of the call frame information is cut"},
      {BinaryFault::kFrameEntryKind, "call frame information of an unknown kind"},
      {BinaryFault::kFrameCommonMissing, "call frame information lacks its common entry"},
      {BinaryFault::kFrameAddress, "call frame information of an unknown function"},
      {BinaryFault::kFrameInstruction, "an unknown call frame instruction"},
  }};
  const auto* const found =
      std::ranges::find(kTexts, fault, &std::pair<BinaryFault, std::string_view>::first);
  return found == kTexts.end() ? std::string_view() : found->second;
}

BinaryFaults::Entry& BinaryFaults::EntryOf(BinaryFault fault, std::string_view section) {
  const auto found = std::ranges::find(entries_, fault, &Entry::fault);
  return found != entries_.end() ? *found : entries_.emplace_back(Entry{fault, section, 0});
}

void BinaryFaults::Add(BinaryFault fault, std::string_view section) {
  ++EntryOf(fault, section).count;
}

void BinaryFaults::Add(const BinaryFaults& others) {
  for (const Entry& entry : others.entries_) {
    EntryOf(entry.fault, entry.section).count += entry.count;
  }
}

bool BinaryFaults::Has(BinaryFault fault) const {
  return std::ranges::find(entries_, fault, &Entry::fault) != entries_.end();
}

std::string TextOf(const BinaryFaults::Entry& entry) {
  std::string text;
  if (!entry.section.empty()) {
    text.append("section ").append(entry.section).append(": ");
  }
  text += TextOf(entry.fault);
  if (entry.count > 1) {
    text += " (and " + std::to_string(entry.count - 1) + " more)";
  }
  return text;
}

}  // namespace velkor
