#include "platform/windows/wide_text.h"

#include <cstddef>
#include <cstdint>

#include "platform/characters.h"

namespace velkor {
namespace {

constexpr char32_t kBeyondUnits = 0x10000;

bool IsSurrogate(char32_t character) {
  return character >= 0xD800 && character < 0xE000;
}

bool IsPair(std::wstring_view wide, size_t position) {
  return position + 1 < wide.size() && wide[position] >= 0xD800 && wide[position] < 0xDC00 &&
         wide[position + 1] >= 0xDC00 && wide[position + 1] < 0xE000;
}

// The half that three bytes stand for; none for other bytes.
std::optional<wchar_t> HalfPairAt(std::string_view utf8, size_t position) {
  if (utf8.size() - position < 3 || ByteAt(utf8, position) != 0xED ||
      (ByteAt(utf8, position + 1) & 0xE0U) != 0xA0 || (ByteAt(utf8, position + 2) & 0xC0U) != 0x80) {
    return std::nullopt;
  }
  return static_cast<wchar_t>(0xD000U | ((ByteAt(utf8, position + 1) & 0x3FU) << 6) |
                              (ByteAt(utf8, position + 2) & 0x3FU));
}

void AppendPair(char32_t character, std::wstring& wide) {
  wide += static_cast<wchar_t>(0xD800 + ((character - kBeyondUnits) >> 10));
  wide += static_cast<wchar_t>(0xDC00 + ((character - kBeyondUnits) & 0x3FF));
}

void AppendFourBytes(char32_t character, std::string& utf8) {
  utf8 += static_cast<char>(0xF0 | (character >> 18));
  for (const int shift : {12, 6, 0}) {
    utf8 += static_cast<char>(0x80 | ((character >> shift) & 0x3F));
  }
}

}  // namespace

std::optional<std::wstring> ToWide(std::string_view utf8) {
  std::wstring wide;
  for (size_t position = 0, length = 0; position < utf8.size(); position += length) {
    length = Utf8Length(utf8, position);
    if (const std::optional<wchar_t> half = HalfPairAt(utf8, position)) {
      wide += *half;
      length = 3;
      continue;
    }
    const char32_t character = DecodeUtf8(utf8.substr(position, length));
    if (length == 1 && character >= 0x80) {
      return std::nullopt;
    }
    if (character >= kBeyondUnits) {
      AppendPair(character, wide);
    } else {
      wide += static_cast<wchar_t>(character);
    }
  }
  return wide;
}

std::string FromWide(std::wstring_view wide) {
  std::string utf8;
  for (size_t position = 0; position < wide.size(); ++position) {
    const char32_t unit = static_cast<char16_t>(wide[position]);
    if (IsSurrogate(unit) && IsPair(wide, position)) {
      const char32_t second = static_cast<char16_t>(wide[++position]);
      AppendFourBytes(kBeyondUnits + ((unit & 0x3FF) << 10) + (second & 0x3FF), utf8);
    } else {
      AppendUtf8(static_cast<char16_t>(unit), utf8);
    }
  }
  return utf8;
}

}  // namespace velkor
