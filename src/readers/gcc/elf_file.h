#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "readers/gcc/binary_fault.h"
#include "readers/gcc/byte_reader.h"

namespace velkor {

// Machine numbers of ELF that something here depends on.
enum ElfMachine : uint16_t {
  ELF_ARM = 40,
  ELF_X86_64 = 62,
  ELF_AVR = 83,
  ELF_AARCH64 = 183,
  ELF_RISCV = 243,
};

enum class ElfSectionState : uint8_t {
  kPresent,
  kAbsent,      // it has no bytes in the file: .bss, or debug information that is kept elsewhere
  kCompressed,  // its bytes are not those of the section
  kUnusable,    // outside the file, or over other sections
};

struct ElfSection {
  std::string_view name;
  std::string_view bytes;  // empty unless kPresent
  uint64_t address = 0;
  uint64_t size = 0;
  uint64_t entrySize = 0;
  uint64_t flags = 0;
  uint32_t type = 0;
  uint32_t link = 0;
  uint32_t info = 0;
  ElfSectionState state = ElfSectionState::kAbsent;

  bool IsWritable() const { return (flags & 1U) != 0; }
  bool IsLoaded() const { return (flags & 2U) != 0; }
  bool HasCode() const { return (flags & 4U) != 0; }
};

// What the sections of vector tables are called.
inline constexpr std::string_view kVectorSections[] = {".isr_vector", ".vectors", ".vector_table"};

enum class ElfSymbolType : uint8_t {
  kNone = 0,
  kObject = 1,
  kFunction = 2,
  kSection = 3,
  kFile = 4,
  kIndirectFunction = 10,
};

enum class ElfBinding : uint8_t { kLocal = 0, kGlobal = 1, kWeak = 2, kUnique = 10 };

struct ElfSymbol {
  // Sections that are none. Numbers of real sections are smaller.
  static constexpr uint32_t kUndefined = 0;
  static constexpr uint32_t kAbsolute = 0xFFFFFFF1;
  static constexpr uint32_t kCommon = 0xFFFFFFF2;
  static constexpr uint32_t kNoSection = 0xFFFFFFFF;

  std::string_view name;
  uint64_t value = 0;  // in a relocatable file the place within the section
  uint64_t size = 0;
  uint32_t section = kUndefined;
  ElfSymbolType type = ElfSymbolType::kNone;  // others keep their number
  ElfBinding binding = ElfBinding::kLocal;    // likewise

  bool IsFunction() const {
    return type == ElfSymbolType::kFunction || type == ElfSymbolType::kIndirectFunction;
  }
};

struct ElfRelocation {
  uint64_t offset = 0;  // within the section that it changes
  int64_t addend = 0;
  uint32_t type = 0;
  uint32_t symbol = 0;         // an index of Symbols(), always within it
  bool addendInPlace = false;  // the addend lies in the bytes that it changes
};

struct ElfSegment {
  std::string_view bytes;  // what the file holds of it
  uint64_t address = 0;
  uint64_t physicalAddress = 0;
  uint64_t memorySize = 0;
  uint32_t type = 0;

  bool IsLoaded() const { return type == 1; }
};

// An object or linked program in the ELF format, of 32 or 64 bits and either byte order, over bytes
// that belong to the caller and outlive it. Any bytes may be given: what is usable is answered, and
// Faults() says what was not. Memory is at most a small multiple of the bytes, time linear in them.
// Read once, then used by any number of threads.
class ElfFile {
 public:
  explicit ElfFile(std::string_view bytes);

  bool IsElf() const { return isElf_; }
  bool Is64() const { return is64_; }
  ByteOrder Order() const { return order_; }
  uint16_t Machine() const { return machine_; }
  uint32_t Flags() const { return flags_; }
  // An object, whose addresses are places within sections, rather than a linked program.
  bool IsRelocatable() const { return type_ == 1; }
  uint64_t Entry() const { return entry_; }
  size_t AddressSize() const { return is64_ ? 8 : 4; }

  // By number; the first is always the empty one, where there is any.
  const std::vector<ElfSection>& Sections() const { return sections_; }
  // By number, the first likewise. Empty where the file was stripped.
  const std::vector<ElfSymbol>& Symbols() const { return symbols_; }
  const std::vector<ElfSegment>& Segments() const { return segments_; }
  // The first of that name, none otherwise.
  const ElfSection* FindSection(std::string_view name) const;
  // What changes the bytes of the section, ordered by offset; of equal offsets, in the file's
  // order. Faults of this section are added to faults.
  std::vector<ElfRelocation> RelocationsOf(uint32_t section, BinaryFaults& faults) const;

  const BinaryFaults& Faults() const { return faults_; }

 private:
  struct Header;
  struct RelocationSection {
    uint32_t target;
    uint32_t section;
  };

  bool ReadIdentification();
  Header ReadHeader();
  void ReadSections(const Header& header);
  void ReadSection(ByteReader& reader);
  void NameSections(uint32_t nameSection);
  void FindBytes();
  void ReadSegments(const Header& header);
  void ReadSymbols();
  ElfSymbol ReadSymbol(ByteReader& reader, std::string_view names, ByteReader& longSections);
  uint32_t SectionOfSymbol(uint16_t number, uint32_t longNumber);
  std::string_view Name(std::string_view names, uint64_t offset, std::string_view where);
  std::string_view BytesOf(uint32_t section) const;
  uint64_t Address(ByteReader& reader) const { return reader.Unsigned(AddressSize()); }

  std::string_view bytes_;
  bool isElf_ = false;
  bool is64_ = false;
  ByteOrder order_ = ByteOrder::kLittle;
  uint16_t type_ = 0;
  uint16_t machine_ = 0;
  uint32_t flags_ = 0;
  uint64_t entry_ = 0;
  uint32_t symbolSection_ = 0;
  uint64_t nameBytesLeft_ = 0;  // a limit on names that share their bytes
  std::vector<ElfSection> sections_;
  std::vector<uint64_t> offsets_;      // of sections_, until their bytes are found
  std::vector<uint32_t> nameOffsets_;  // likewise, until they are named
  std::vector<ElfSymbol> symbols_;
  std::vector<ElfSegment> segments_;
  std::vector<RelocationSection> relocationSections_;  // ordered by target
  BinaryFaults faults_;
};

}  // namespace velkor
