#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/charset_converter.h"

namespace velkor {

// The steps of a text between a code page and UTF-8, a character at a time.

// One character in UTF-8, made visible whatever it is.
void AppendWellFormed(std::string_view character, std::string& result);
// One of another set; U+FFFD where it has no place.
void AppendConverted(std::string_view character, CharsetConverter& converter, std::string& result);
// What the escapes that begin at the position stand for. Answers their length.
size_t AppendEscaped(std::string_view text, size_t position, std::string& result);

// None when a character has no place in the set. set: what each byte is in Unicode.
std::optional<std::string> Utf8ToShiftJis(std::string_view utf8);
std::optional<std::string> Utf8ToSingleByte(std::string_view utf8, std::u16string_view set);
bool IsWellFormedUtf8(std::string_view text);

}  // namespace velkor
