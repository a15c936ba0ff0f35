#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "readers/gcc/elf_file.h"

namespace velkor::testing {

// Bytes of a file, number by number.
class Image {
 public:
  explicit Image(ByteOrder order = ByteOrder::kLittle) : order_(order) {}

  Image& Number(uint64_t value, size_t width) {
    for (size_t i = 0; i < width; ++i) {
      const size_t byte = order_ == ByteOrder::kLittle ? i : width - 1 - i;
      bytes += static_cast<char>(value >> (8 * byte));
    }
    return *this;
  }
  Image& Half(uint32_t value) { return Number(value, 2); }
  Image& Word(uint32_t value) { return Number(value, 4); }
  Image& Text(std::string_view text) {
    bytes.append(text).push_back('\0');
    return *this;
  }
  Image& Raw(std::string_view more) {
    bytes.append(more);
    return *this;
  }

  std::string bytes;

 private:
  ByteOrder order_;
};

// Makes small ELF files: sections, one symbol table, relocations.
class ElfImage {
 public:
  struct Section {
    std::string name;
    uint32_t type = 1;  // bytes of the program
    uint64_t flags = 0;
    std::string bytes = {};
    uint32_t link = 0;
    uint32_t info = 0;
    uint64_t entrySize = 0;
    uint64_t address = 0;
    uint64_t size = UINT64_MAX;    // other than that of the bytes
    uint64_t offset = UINT64_MAX;  // other than where the bytes are
  };
  static constexpr uint64_t kCode = 6;
  static constexpr uint8_t kGlobalFunction = 0x12;
  static constexpr uint8_t kWeakFunction = 0x22;
  static constexpr uint8_t kLocalFunction = 0x02;

  ElfImage(uint16_t machine, bool is64, ByteOrder order = ByteOrder::kLittle, bool linked = false)
      : machine_(machine), is64_(is64), order_(order), linked_(linked) {
    sections_.push_back({"", 0});
    symbols_.Raw(std::string(is64 ? 24 : 16, '\0'));
  }

  uint32_t Add(Section section) {
    sections_.push_back(std::move(section));
    return static_cast<uint32_t>(sections_.size() - 1);
  }
  uint32_t AddCode(const std::string& name, std::string bytes, uint64_t address = 0) {
    return Add({name, 1, kCode, std::move(bytes), 0, 0, 0, address});
  }
  uint32_t AddSymbol(std::string_view name, uint8_t info, uint32_t section, uint64_t value = 0,
                     uint64_t size = 0) {
    symbols_.Word(static_cast<uint32_t>(names_.size()));
    names_.append(name).push_back('\0');
    if (!is64_) {
      symbols_.Number(value, 4).Number(size, 4);
    }
    symbols_.Number(info, 1).Number(0, 1).Half(section);
    if (is64_) {
      symbols_.Number(value, 8).Number(size, 8);
    }
    return symbolCount_++;
  }
  // With an addend of its own in 64 bits, in place otherwise.
  void AddRelocation(uint32_t section, uint64_t offset, uint32_t type, uint32_t symbol,
                     int64_t addend = 0) {
    Image entry(order_);
    entry.Number(offset, Width());
    entry.Number(is64_ ? uint64_t{symbol} << 32 | type : symbol << 8 | type, Width());
    if (is64_) {
      entry.Number(static_cast<uint64_t>(addend), 8);
    }
    relocations_.resize(std::max<size_t>(relocations_.size(), section + 1));
    relocations_[section] += entry.bytes;
  }
  void AddSegment(uint32_t type, uint32_t section) { segments_.emplace_back(type, section); }

  std::string Build() {
    AddTables();
    Image file(order_);
    file.Raw(std::string(is64_ ? 64 : 52, '\0'));
    for (Section& section : sections_) {
      if (section.offset == UINT64_MAX) {
        section.offset = file.bytes.size();
        file.Raw(section.bytes);
      }
      section.size = section.size == UINT64_MAX ? section.bytes.size() : section.size;
    }
    const uint64_t segmentTable = file.bytes.size();
    for (const auto& [type, section] : segments_) {
      file.Raw(SegmentHeader(type, sections_[section]));
    }
    const uint64_t sectionTable = file.bytes.size();
    for (const Section& section : sections_) {
      file.Raw(SectionHeader(section));
    }
    const std::string header = Header(segmentTable, sectionTable);
    return file.bytes.replace(0, header.size(), header);
  }

  uint64_t entryAddress = 0;

 private:
  size_t Width() const { return is64_ ? 8 : 4; }

  void AddTables() {
    const auto symbols = static_cast<uint32_t>(sections_.size());
    Add({".symtab", 2, 0, symbols_.bytes, symbols + 1, 1, is64_ ? 24U : 16U});
    Add({".strtab", 3, 0, names_});
    for (uint32_t i = 0; i < relocations_.size(); ++i) {
      if (!relocations_[i].empty()) {
        const std::string name = (is64_ ? ".rela" : ".rel") + sections_[i].name;
        Add({name, is64_ ? 4U : 9U, 0, relocations_[i], symbols, i, Width() * (is64_ ? 3 : 2)});
      }
    }
    std::string names;
    for (const Section& section : sections_) {
      nameOffsets_.push_back(static_cast<uint32_t>(names.size()));
      names.append(section.name).push_back('\0');
    }
    nameOffsets_.push_back(static_cast<uint32_t>(names.size()));
    Add({".shstrtab", 3, 0, names + ".shstrtab" + '\0'});
  }

  std::string SegmentHeader(uint32_t type, const Section& section) const {
    Image header(order_);
    header.Word(type);
    if (is64_) {
      header.Word(5);
    }
    for (const uint64_t number :
         {section.offset, section.address, section.address, section.size, section.size}) {
      header.Number(number, Width());
    }
    if (!is64_) {
      header.Word(5);
    }
    return header.Number(1, Width()).bytes;
  }

  std::string SectionHeader(const Section& section) {
    Image header(order_);
    header.Word(nameOffsets_[nextName_++]).Word(section.type);
    header.Number(section.flags, Width()).Number(section.address, Width());
    header.Number(section.offset, Width()).Number(section.size, Width());
    header.Word(section.link).Word(section.info);
    return header.Number(1, Width()).Number(section.entrySize, Width()).bytes;
  }

  std::string Header(uint64_t segmentTable, uint64_t sectionTable) const {
    Image header(order_);
    header
        .Raw(
            "\x7F"
            "ELF")
        .Number(is64_ ? 2 : 1, 1);
    header.Number(order_ == ByteOrder::kLittle ? 1 : 2, 1).Number(1, 1).Raw(std::string(9, '\0'));
    header.Half(linked_ ? 2 : 1).Half(machine_).Word(1).Number(entryAddress, Width());
    header.Number(segmentTable, Width()).Number(sectionTable, Width()).Word(0);
    header.Half(is64_ ? 64 : 52).Half(is64_ ? 56 : 32);
    header.Half(static_cast<uint32_t>(segments_.size())).Half(is64_ ? 64 : 40);
    header.Half(static_cast<uint32_t>(sections_.size()));
    return header.Half(static_cast<uint32_t>(sections_.size() - 1)).bytes;
  }

  uint16_t machine_;
  bool is64_;
  ByteOrder order_;
  bool linked_;
  std::vector<Section> sections_;
  Image symbols_{order_};
  std::string names_ = std::string(1, '\0');
  uint32_t symbolCount_ = 1;
  std::vector<std::string> relocations_;  // by section
  std::vector<std::pair<uint32_t, uint32_t>> segments_;
  std::vector<uint32_t> nameOffsets_;
  size_t nextName_ = 0;
};

}  // namespace velkor::testing
