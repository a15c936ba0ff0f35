#include <algorithm>

#include "platform/byte_escape.h"
#include "platform/charset_converter.h"
#include "platform/code_page.h"

namespace velkor {
namespace {

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

bool IsAsciiByte(char byte) {
  return static_cast<unsigned char>(byte) < 0x80;
}

// One character in UTF-8, made visible whatever it is.
void AppendWellFormed(std::string_view character, std::string& result) {
  if (character.size() == 1 && !IsAsciiByte(character[0])) {
    AppendUtf8(kReplacementCharacter, result);
  } else {
    result += character;
  }
}

void AppendConverted(std::string_view character, CharsetConverter& converter, std::string& result) {
  if (character.size() == 1 && IsAsciiByte(character[0])) {
    result += character;
    return;
  }
  const size_t before = result.size();
  if (converter.Append(character, result) != CharsetConverter::Outcome::kConverted) {
    result.resize(before);
    AppendUtf8(kReplacementCharacter, result);
  }
}

// Appends what the escapes that begin at the position stand for. Answers their length.
size_t AppendEscaped(std::string_view text, size_t position, std::string& result) {
  std::string bytes;
  size_t end = position;
  for (; const std::optional<char> byte = ByteEscape::At(text, end); end += ByteEscape::kLength) {
    if (*byte == ByteEscape::kSubstitute) {
      AppendUtf8(kReplacementCharacter, bytes);
    } else {
      bytes += *byte;
    }
  }
  const CodePage unicode = CodePage::Utf8();
  for (size_t at = 0, length = 0; at < bytes.size(); at += length) {
    length = unicode.CharLength(bytes, at);
    AppendWellFormed(std::string_view(bytes).substr(at, length), result);
  }
  return end - position;
}

std::optional<std::string> Utf8ToShiftJis(std::string_view utf8) {
  const CodePage unicode = CodePage::Utf8();
  CharsetConverter converter("UTF-8", "CP932");
  std::string result;
  for (size_t position = 0, length = 0; position < utf8.size(); position += length) {
    length = unicode.CharLength(utf8, position);
    const size_t before = result.size();
    if (converter.Append(utf8.substr(position, length), result) !=
        CharsetConverter::Outcome::kConverted) {
      return std::nullopt;
    }
    // A currency or overline sign must not become the backslash or tilde that looks like it.
    if (length > 1 && IsAsciiByte(result[before])) {
      return std::nullopt;
    }
  }
  return result;
}

std::optional<std::string> Utf8ToSingleByte(std::string_view utf8, std::u16string_view set) {
  const CodePage unicode = CodePage::Utf8();
  std::string result;
  std::string candidate;
  for (size_t position = 0, length = 0; position < utf8.size(); position += length) {
    length = unicode.CharLength(utf8, position);
    const std::string_view character = utf8.substr(position, length);
    const auto found = std::find_if(set.begin(), set.end(), [&](char16_t place) {
      candidate.clear();
      AppendUtf8(place, candidate);
      return place != kReplacementCharacter && candidate == character;
    });
    if (found == set.end()) {
      return std::nullopt;
    }
    result += static_cast<char>(found - set.begin());
  }
  return result;
}

}  // namespace

std::string CodePage::ToUtf8(std::string_view text) const {
  if (IsAscii(text) && text.find(ByteEscape::kSubstitute) == std::string_view::npos) {
    return std::string(text);
  }
  std::string result;
  result.reserve(text.size());
  std::optional<CharsetConverter> converter;
  if (kind_ == Kind::kShiftJis) {
    converter.emplace("CP932", "UTF-8");
  }
  for (size_t position = 0, length = 0; position < text.size(); position += length) {
    length = AppendEscaped(text, position, result);
    if (length != 0) {
      continue;
    }
    length = CharLength(text, position);
    const std::string_view character = text.substr(position, length);
    if (converter) {
      AppendConverted(character, *converter, result);
    } else if (kind_ == Kind::kSingleByte) {
      AppendUtf8(unicode_[static_cast<unsigned char>(character.front())], result);
    } else {
      AppendWellFormed(character, result);
    }
  }
  return result;
}

std::optional<std::string> CodePage::FromUtf8(std::string_view utf8) const {
  if (IsAscii(utf8)) {
    return std::string(utf8);
  }
  if (kind_ == Kind::kShiftJis) {
    return Utf8ToShiftJis(utf8);
  }
  if (kind_ == Kind::kSingleByte) {
    return Utf8ToSingleByte(utf8, unicode_);
  }
  for (size_t position = 0, length = 0; position < utf8.size(); position += length) {
    length = CharLength(utf8, position);
    if (length == 1 && !IsAsciiByte(utf8[position])) {
      return std::nullopt;
    }
  }
  return std::string(utf8);
}

}  // namespace velkor
