#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velkor {

// Why a part of an object or program file could not be used.
enum class BinaryFault : uint8_t {
  kNotElf,
  kUnknownClass,
  kHeaderCut,
  kSectionTableCut,
  kSegmentTableCut,
  kOutsideFile,
  kOverlaps,
  kCompressed,
  kEntrySize,
  kSymbolSection,
  kNamesTooLong,
  kRelocationSymbol,
  kFrameEntryCut,
  kFrameEntryKind,
  kFrameCommonMissing,
  kFrameAddress,
  kFrameInstruction,
};

// As a phrase that follows the file's name and "of section NAME".
std::string_view TextOf(BinaryFault fault);

// The faults of one file, each kind once: where it was met first, and how often. However broken a
// file is, the list stays short.
class BinaryFaults {
 public:
  struct Entry {
    BinaryFault fault;
    std::string_view section;  // its name, "" where none is meant
    uint64_t count = 0;
  };

  void Add(BinaryFault fault, std::string_view section = {});
  void Add(const BinaryFaults& others);
  bool Has(BinaryFault fault) const;
  bool IsEmpty() const { return entries_.empty(); }
  const std::vector<Entry>& Entries() const { return entries_; }

 private:
  Entry& EntryOf(BinaryFault fault, std::string_view section);

  std::vector<Entry> entries_;
};

// "section .debug_frame: it is compressed", with "(and N more)" where it was met again.
std::string TextOf(const BinaryFaults::Entry& entry);

}  // namespace velkor
