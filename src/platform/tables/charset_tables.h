#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace velkor {

// The character sets that a program knows by itself. The tables are made when it is built, from what
// the C library of the building machine knows (cmake/charset_tables.cpp).

// A set of single bytes. unicode: what each of the 256 bytes is, U+FFFD for none.
struct SingleByteTable {
  std::string_view name;
  const char16_t* unicode;
};

// A character of set 932: one byte, or two with the first in the upper half.
struct ShiftJisCharacter {
  uint16_t bytes;
  char16_t unicode;
};

extern const std::span<const SingleByteTable> kSingleByteTables;
extern const std::span<const ShiftJisCharacter> kShiftJisToUnicode;  // ascending by bytes
extern const std::span<const ShiftJisCharacter> kUnicodeToShiftJis;  // ascending by unicode

}  // namespace velkor
