#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "readers/gcc/code/linker_table.h"
#include "readers/gcc/elf_file.h"

namespace velkor {

// The code of a linked program by address, and what its mapping symbols say of it. An address of
// ARM code carries bit 0 for Thumb, as a register would: Place() is the address without it. Views
// into the file. Read once, then used by any number of threads.
class CodeImage {
 public:
  explicit CodeImage(const ElfFile& elf);

  uint64_t Place(uint64_t address) const { return isArm_ ? address & ~uint64_t{1} : address; }
  // The bytes from there to the end of the section; empty where there is no code.
  std::string_view CodeAt(uint64_t address) const;
  // The same of what cannot change while the program runs: code, and sections that are not written.
  std::string_view ConstantsAt(uint64_t address) const;
  // Mapping symbols tell code from data ($t, $d).
  bool HasMarks() const { return !marks_.empty(); }
  bool IsData(uint64_t address) const;
  // None: no mapping symbol says it.
  std::optional<bool> IsThumb(uint64_t address) const;
  // Where what the mapping symbols say changes next.
  uint64_t NextMark(uint64_t address) const;

  // An address as wide as the machine's.
  uint64_t Wrapped(uint64_t address) const { return is64_ ? address : address & UINT32_MAX; }

  const LinkerTable& Table() const { return table_; }

  ByteOrder Order() const { return order_; }
  uint64_t CodeBytes() const;

 private:
  struct Part {
    uint64_t address = 0;
    std::string_view bytes;
    bool isCode = false;
  };
  struct Mark {
    uint64_t address = 0;
    char kind = 'd';
  };

  const Part* PartAt(uint64_t address) const;
  bool IsReturnWord(uint64_t address) const;
  const Mark* MarkAt(uint64_t address) const;

  std::vector<Part> parts_;  // ordered by address
  std::vector<Mark> marks_;  // likewise
  LinkerTable table_;
  ByteOrder order_;
  bool isArm_;
  bool is64_;
};

}  // namespace velkor
