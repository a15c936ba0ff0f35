#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velkor {

// Characters of the sets that take several bytes for one. A byte that begins no well-formed
// character counts as one of its own.

inline unsigned char ByteAt(std::string_view text, size_t position) {
  return static_cast<unsigned char>(text[position]);
}

// Bytes of the character at a position inside the text.
size_t Utf8Length(std::string_view text, size_t position);
size_t ShiftJisLength(std::string_view text, size_t position);
// Of one whole character: a number in the order of the set. A stray byte of UTF-8 comes after every
// character of Unicode; in 932 a character of two bytes is lead byte * 256 + trail byte.
char32_t DecodeUtf8(std::string_view character);
char32_t DecodeShiftJis(std::string_view character);

bool IsAscii(std::string_view text);
void AppendUtf8(char16_t character, std::string& result);

}  // namespace velkor
