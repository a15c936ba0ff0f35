#pragma once

namespace velkor {

// Upper-case forms of single characters, the same on every host and in every locale. A character
// without letter case, or whose upper-case form is more than one character, is its own.

constexpr unsigned char UpperAscii(unsigned char byte) {
  return byte >= 'a' && byte <= 'z' ? static_cast<unsigned char>(byte - 'a' + 'A') : byte;
}
char32_t UpperUnicode(char32_t character);
// Of a character of code page 932: one byte, or lead byte * 256 + trail byte.
char32_t UpperShiftJis(char32_t character);

}  // namespace velkor
