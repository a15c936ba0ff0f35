#include "platform/host_names.h"

#include <optional>
#include <utility>

#include "platform/byte_escape.h"
#include "platform/characters.h"

namespace velkor {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

bool IsAsciiCharacter(std::string_view character) {
  return character.size() == 1 && static_cast<unsigned char>(character.front()) < 0x80;
}

}  // namespace

HostNames::HostNames(CodePage codePage, CodePage host)
    : codePage_(std::move(codePage)),
      host_(std::move(host)),
      sameSet_(codePage_.Name() == host_.Name()) {}

std::string HostNames::ToText(std::string_view bytes, bool escapeSeparator) const {
  std::string text;
  for (size_t position = 0, length = 0; position < bytes.size(); position += length) {
    length = host_.CharLength(bytes, position);
    const std::string_view character = bytes.substr(position, length);
    const char first = character.front();
    if (first == ByteEscape::kSubstitute || (first == '\\' && escapeSeparator)) {
      ByteEscape::Append(first, text);
    } else {
      text += sameSet_ || IsAsciiCharacter(character) ? character : CharacterToText(character);
    }
  }
  return text;
}

// The character of the code page that leads back to this one, else its bytes.
std::string HostNames::CharacterToText(std::string_view character) const {
  const std::optional<std::string> text = codePage_.FromUtf8(host_.ToUtf8(character));
  if (text && host_.FromUtf8(codePage_.ToUtf8(*text)) == character) {
    return *text;
  }
  std::string escaped;
  for (const char byte : character) {
    ByteEscape::Append(byte, escaped);
  }
  return escaped;
}

std::string HostNames::Name(std::string_view component) const {
  if (IsAscii(component) && component.find(ByteEscape::kSubstitute) == component.npos) {
    return std::string(component);
  }
  std::string name;
  for (size_t position = 0, length = 0; position < component.size(); position += length) {
    if (const std::optional<char> byte = ByteEscape::At(component, position)) {
      name += *byte;
      length = ByteEscape::kLength;
      continue;
    }
    length = codePage_.CharLength(component, position);
    const std::string_view character = component.substr(position, length);
    name += sameSet_ || IsAsciiCharacter(character) ? std::string(character)
                                                    : CharacterToName(character);
  }
  return name;
}

std::string HostNames::CharacterToName(std::string_view character) const {
  const std::string utf8 = codePage_.ToUtf8(character);
  const std::optional<std::string> name = host_.FromUtf8(utf8);
  return name && utf8 != kReplacement ? *name : std::string(character);
}

bool HostNames::IsSpelling(std::string_view found, std::string_view component) const {
  return host_.EqualIgnoreCase(found, Name(component)) ||
         codePage_.EqualIgnoreCase(found, component) ||
         CodePage::Utf8().EqualIgnoreCase(found, codePage_.ToUtf8(component));
}

HostNames::Hashes HostNames::HashesOfFound(std::string_view found) const {
  return {host_.HashIgnoreCase(found), codePage_.HashIgnoreCase(found),
          CodePage::Utf8().HashIgnoreCase(found)};
}

HostNames::Hashes HostNames::HashesOfComponent(std::string_view component) const {
  return {host_.HashIgnoreCase(Name(component)), codePage_.HashIgnoreCase(component),
          CodePage::Utf8().HashIgnoreCase(codePage_.ToUtf8(component))};
}

}  // namespace velkor
