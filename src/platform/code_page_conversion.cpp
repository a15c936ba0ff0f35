#include "platform/code_page_conversion.h"

#include <algorithm>

#include "platform/byte_escape.h"
#include "platform/characters.h"

namespace velkor {
namespace {

bool IsAsciiByte(char byte) {
  return static_cast<unsigned char>(byte) < 0x80;
}

}  // namespace

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
  for (size_t at = 0, length = 0; at < bytes.size(); at += length) {
    length = Utf8Length(bytes, at);
    AppendWellFormed(std::string_view(bytes).substr(at, length), result);
  }
  return end - position;
}

std::optional<std::string> Utf8ToShiftJis(std::string_view utf8) {
  CharsetConverter converter("UTF-8", "CP932");
  std::string result;
  for (size_t position = 0, length = 0; position < utf8.size(); position += length) {
    length = Utf8Length(utf8, position);
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
  std::string result;
  std::string candidate;
  for (size_t position = 0, length = 0; position < utf8.size(); position += length) {
    length = Utf8Length(utf8, position);
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

bool IsWellFormedUtf8(std::string_view text) {
  for (size_t position = 0, length = 0; position < text.size(); position += length) {
    length = Utf8Length(text, position);
    if (length == 1 && !IsAsciiByte(text[position])) {
      return false;
    }
  }
  return true;
}

}  // namespace velkor
