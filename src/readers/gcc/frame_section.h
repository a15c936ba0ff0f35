#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

#include "readers/gcc/elf_file.h"
#include "readers/gcc/frame_rows.h"
#include "readers/gcc/function_frame.h"

namespace velkor {

// Reads one section of call frame information.
class FrameSectionReader {
 public:
  enum class Kind { kExceptionFrames, kDebugFrames };  // .eh_frame, .debug_frame

  FrameSectionReader(const ElfFile& elf, uint32_t section, Kind kind, BinaryFaults& faults);

  // Adds a frame an entry, in the section's order.
  void Read(std::vector<FunctionFrame>& frames);

 private:
  // An entry within the section, by positions.
  struct Entry {
    size_t start = 0;       // of its length
    size_t identifier = 0;  // of what tells common entries from those of functions
    size_t end = 0;
    size_t width = 4;  // of the identifier
  };
  // What the entries of functions have in common.
  struct Common {
    FrameEncoding encoding;
    uint8_t pointerEncoding = 0;
    uint8_t segmentSize = 0;
    bool hasAugmentationSize = false;
    bool isUsable = true;
    FrameRows rows;
  };
  struct Place {
    uint32_t section = 0;
    uint64_t offset = 0;
  };

  std::vector<Entry> FindEntries();
  bool IsCommon(const Entry& entry) const;
  Common ReadCommon(const Entry& entry);
  bool ReadAugmentation(std::string_view letters, ByteReader& reader, Common& common) const;
  void SkipPointer(uint8_t encoding, ByteReader& reader, const Common& common) const;
  void ReadFunction(const Entry& entry, std::vector<FunctionFrame>& frames);
  std::optional<uint64_t> CommonEntryOf(const Entry& entry) const;
  std::optional<Place> ReadAddress(ByteReader& reader, const Common& common) const;
  std::optional<Place> RelocatedPlace(size_t position, int64_t inPlace) const;
  ByteReader ReaderAt(const Entry& entry, size_t position) const;

  const ElfFile& elf_;
  const ElfSection& section_;
  const Kind kind_;
  BinaryFaults& faults_;
  std::vector<ElfRelocation> relocations_;  // none in a linked program
  std::map<uint64_t, Common> commons_;      // by the start of their entries
};

}  // namespace velkor
