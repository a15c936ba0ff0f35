#include "platform/characters.h"

#include <algorithm>

namespace velkor {
namespace {

// Bytes that begin no well-formed character compare after every character of UTF-8.
constexpr char32_t kAfterUnicode = 0x110000;

bool IsBetween(unsigned char byte, unsigned char low, unsigned char high) {
  return byte >= low && byte <= high;
}

// Length of the sequence that a lead byte begins, with the bounds of the byte after it (they keep
// out overlong forms, surrogates and what lies beyond Unicode); 1 for anything else.
struct Utf8Lead {
  size_t length;
  unsigned char low;
  unsigned char high;
};

Utf8Lead LookAtLead(unsigned char lead) {
  if (IsBetween(lead, 0xC2, 0xDF)) {
    return {2, 0x80, 0xBF};
  }
  if (IsBetween(lead, 0xE0, 0xEF)) {
    return {3, static_cast<unsigned char>(lead == 0xE0 ? 0xA0 : 0x80),
            static_cast<unsigned char>(lead == 0xED ? 0x9F : 0xBF)};
  }
  if (IsBetween(lead, 0xF0, 0xF4)) {
    return {4, static_cast<unsigned char>(lead == 0xF0 ? 0x90 : 0x80),
            static_cast<unsigned char>(lead == 0xF4 ? 0x8F : 0xBF)};
  }
  return {1, 0, 0};
}

}  // namespace

size_t Utf8Length(std::string_view text, size_t position) {
  const Utf8Lead lead = LookAtLead(ByteAt(text, position));
  if (lead.length == 1 || text.size() - position < lead.length ||
      !IsBetween(ByteAt(text, position + 1), lead.low, lead.high)) {
    return 1;
  }
  for (size_t i = 2; i < lead.length; ++i) {
    if (!IsBetween(ByteAt(text, position + i), 0x80, 0xBF)) {
      return 1;
    }
  }
  return lead.length;
}

size_t ShiftJisLength(std::string_view text, size_t position) {
  const unsigned char lead = ByteAt(text, position);
  if (!(IsBetween(lead, 0x81, 0x9F) || IsBetween(lead, 0xE0, 0xFC)) || text.size() - position < 2) {
    return 1;
  }
  const unsigned char trail = ByteAt(text, position + 1);
  return IsBetween(trail, 0x40, 0x7E) || IsBetween(trail, 0x80, 0xFC) ? 2 : 1;
}

char32_t DecodeUtf8(std::string_view character) {
  if (character.size() == 1) {
    const unsigned char byte = ByteAt(character, 0);
    return byte < 0x80 ? byte : kAfterUnicode + byte;
  }
  char32_t value = ByteAt(character, 0) & (0x7FU >> character.size());
  for (size_t i = 1; i < character.size(); ++i) {
    value = (value << 6) | (ByteAt(character, i) & 0x3FU);
  }
  return value;
}

char32_t DecodeShiftJis(std::string_view character) {
  const char32_t first = ByteAt(character, 0);
  return character.size() == 1 ? first : (first << 8) | ByteAt(character, 1);
}

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

void AppendUtf8(char16_t character, std::string& result) {
  const auto bits = [character](int shift, unsigned mask, unsigned mark) {
    return static_cast<char>(((static_cast<unsigned>(character) >> shift) & mask) | mark);
  };
  if (character < 0x80) {
    result += static_cast<char>(character);
  } else if (character < 0x800) {
    result += {bits(6, 0x1F, 0xC0), bits(0, 0x3F, 0x80)};
  } else {
    result += {bits(12, 0x0F, 0xE0), bits(6, 0x3F, 0x80), bits(0, 0x3F, 0x80)};
  }
}

}  // namespace velkor
