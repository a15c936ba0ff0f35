#include "platform/character_set.h"

#include <algorithm>
#include <cctype>
#include <initializer_list>
#include <utility>
#include <vector>

#include "platform/charset_converter.h"
#include "platform/letter_case.h"

namespace velkor {
namespace {

constexpr size_t kCharacters = 256;
constexpr size_t kLongestName = 64;

// In upper case; without blanks, and without "-" and "_" when squeezed.
std::string CleanName(std::string_view name, bool squeezed) {
  std::string clean;
  for (const char character : name) {
    const bool skipped = character == ' ' || character == '\t' ||
                         (squeezed && (character == '-' || character == '_'));
    if (!skipped) {
      clean += static_cast<char>(UpperAscii(static_cast<unsigned char>(character)));
    }
  }
  return clean;
}

bool IsPlainName(std::string_view name) {
  return !name.empty() && std::all_of(name.begin(), name.end(), [](char character) {
    return std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '-' ||
           character == '_' || character == '.' || character == ':';
  });
}

bool IsOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

// The spellings under which the host may know a set, most literal first.
std::vector<std::string> Spellings(std::string_view name) {
  const std::string squeezed = CleanName(name, true);
  std::vector<std::string> spellings = {CleanName(name, false), squeezed, "CP" + squeezed};
  constexpr std::string_view kVendorPrefix = "WINDOWS";
  if (squeezed.starts_with(kVendorPrefix)) {
    spellings.push_back("CP" + squeezed.substr(kVendorPrefix.size()));
  }
  return spellings;
}

// What each byte is in Unicode; none for a set that is not of single bytes over ASCII.
std::optional<std::u16string> ReadSingleByteSet(const std::string& name) {
  CharsetConverter converter(name, "UTF-16LE");
  if (!converter.IsOpen()) {
    return std::nullopt;
  }
  std::u16string unicode(kCharacters, kReplacementCharacter);
  for (size_t byte = 0; byte < kCharacters; ++byte) {
    const char text = static_cast<char>(byte);
    std::string unit;
    const CharsetConverter::Outcome outcome = converter.Append({&text, 1}, unit);
    if (outcome == CharsetConverter::Outcome::kIncomplete) {
      return std::nullopt;
    }
    if (outcome == CharsetConverter::Outcome::kConverted && unit.size() == 2) {
      unicode[byte] = static_cast<char16_t>(static_cast<unsigned char>(unit[0]) |
                                            (static_cast<unsigned char>(unit[1]) << 8));
    }
    if (byte < 0x80 && unicode[byte] != byte) {
      return std::nullopt;
    }
  }
  return unicode;
}

std::string UpperCaseBytes(const std::u16string& unicode) {
  std::string upper;
  for (size_t byte = 0; byte < kCharacters; ++byte) {
    const char32_t character = unicode[byte];
    const auto place = std::find(unicode.begin(), unicode.end(), UpperUnicode(character));
    upper += character == kReplacementCharacter || place == unicode.end()
                 ? static_cast<char>(byte)
                 : static_cast<char>(place - unicode.begin());
  }
  return upper;
}

}  // namespace

std::optional<KnownSet> KnownSetOf(std::string_view name) {
  if (name.size() > kLongestName || !IsPlainName(CleanName(name, false))) {
    return std::nullopt;
  }
  const std::string squeezed = CleanName(name, true);
  if (IsOneOf(squeezed, {"UTF8", "CP65001", "65001"})) {
    return KnownSet::kUtf8;
  }
  if (IsOneOf(squeezed, {"932", "CP932", "MS932", "SJIS", "SHIFTJIS", "WINDOWS31J"})) {
    return KnownSet::kShiftJis;
  }
  return IsOneOf(squeezed, {"LATIN1", "ISO88591"}) ? KnownSet::kLatin1 : KnownSet::kOther;
}

std::optional<SingleByteSet> FindSingleByteSet(std::string_view name) {
  for (const std::string& spelling : Spellings(name)) {
    if (std::optional<std::u16string> unicode = ReadSingleByteSet(spelling)) {
      std::string upper = UpperCaseBytes(*unicode);
      return SingleByteSet{spelling, std::move(*unicode), std::move(upper)};
    }
  }
  return std::nullopt;
}

SingleByteSet Latin1Set() {
  SingleByteSet set{.name = "ISO-8859-1", .unicode = {}, .upper = {}};
  for (size_t byte = 0; byte < kCharacters; ++byte) {
    set.unicode += static_cast<char16_t>(byte);
  }
  set.upper = UpperCaseBytes(set.unicode);
  return set;
}

}  // namespace velkor
