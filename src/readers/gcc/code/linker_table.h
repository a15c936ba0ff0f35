#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "readers/gcc/elf_file.h"

namespace velkor {

// The tables of addresses that a linker makes (.got): what each of their words is once the program
// runs. Nothing else writes to them. Views into the file.
class LinkerTable {
 public:
  explicit LinkerTable(const ElfFile& elf);

  // Of the word there.
  struct Word {
    std::string_view import;  // of the function or object of that name in a shared library
    uint64_t value = 0;       // else; without the place where the program is loaded
  };
  // None: no such table is there, or what it holds is only known when the program runs.
  std::optional<Word> At(uint64_t address) const;

 private:
  struct Part {
    uint64_t address = 0;
    std::string_view bytes;
  };
  struct Change {
    uint64_t address = 0;
    uint64_t number = 0;  // of the symbol
    uint64_t addend = 0;
    uint32_t symbols = 0;  // the section of that; 0: without a symbol
    bool isKnown = false;
  };

  void ReadChanges(const ElfFile& elf, const ElfSection& section);
  std::optional<Word> WordOf(const Change& change) const;
  const Part* PartAt(uint64_t address) const;

  const ElfFile& elf_;
  std::vector<Part> parts_;      // ordered by address
  std::vector<Change> changes_;  // ordered by address
  ByteOrder order_;
  size_t width_;
};

}  // namespace velkor
