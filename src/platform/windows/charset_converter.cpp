#include "platform/charset_converter.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <windows.h>

namespace velkor {
namespace {

constexpr UINT kUtf16 = 1200;
constexpr UINT kAscii = 20127;
constexpr UINT kFirstStandardSet = 10000;  // before it come the system's own

struct NamedSet {
  std::string_view name;
  UINT number;
};

constexpr NamedSet kNamedSets[] = {{"UTF8", CP_UTF8},    {"UTF16LE", kUtf16}, {"USASCII", kAscii},
                                   {"ASCII", kAscii},    {"KOI8R", 20866},    {"KOI8U", 21866},
                                   {"MACINTOSH", 10000}};

// The rest of the name after the prefix; none for another name, and for a number out of bounds.
std::optional<UINT> NumberAfter(std::string_view prefix, std::string_view name, UINT first,
                                UINT last) {
  const std::string_view digits = name.substr(std::min(prefix.size(), name.size()));
  UINT number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  const bool isNumber = name.starts_with(prefix) && error == std::errc() &&
                        end == digits.data() + digits.size();
  return isNumber && number >= first && number <= last ? std::optional(number) : std::nullopt;
}

std::optional<UINT> NumberOf(const std::string& name) {
  constexpr UINT kIsoSets = 28590;
  constexpr UINT kMostIsoSets = 16;
  // Smaller ones stand for what the system or the thread uses.
  constexpr UINT kFirstSet = 100;
  constexpr UINT kLastSet = 65535;
  std::string squeezed;
  std::ranges::copy_if(name, std::back_inserter(squeezed), [](char character) {
    return std::isalnum(static_cast<unsigned char>(character)) != 0;
  });
  const auto* const named = std::ranges::find(kNamedSets, squeezed, &NamedSet::name);
  if (named != std::end(kNamedSets)) {
    return named->number;
  }
  if (const auto part = NumberAfter("ISO8859", squeezed, 1, kMostIsoSets)) {
    return kIsoSets + *part;
  }
  return NumberAfter("CP", squeezed, kFirstSet, kLastSet);
}

// Sets of more than two bytes for a character, UTF-8 aside, convert in ways of their own.
bool IsUsable(UINT set) {
  CPINFO info{};
  return set == kUtf16 || set == CP_UTF8 ||
         (GetCPInfo(set, &info) != 0 && info.MaxCharSize <= 2);
}

// In its own sets the system makes a control character of a byte that they leave out.
bool IsMadeUp(UINT set, std::wstring_view character) {
  if (character.size() != 1) {
    return false;
  }
  const auto unit = static_cast<char16_t>(character[0]);
  const bool isControl = unit >= 0x80 && unit < 0xA0;
  return isControl && set < kFirstStandardSet;
}

bool IsIncomplete(UINT set, std::string_view text) {
  return text.size() == 1 && set != CP_UTF8 &&
         IsDBCSLeadByteEx(set, static_cast<BYTE>(text[0])) != 0;
}

std::optional<std::wstring> Decode(UINT set, std::string_view text) {
  const auto length = static_cast<int>(text.size());
  if (set == kAscii && std::ranges::any_of(text, [](char byte) { return (byte & 0x80) != 0; })) {
    return std::nullopt;
  }
  std::wstring wide(text.size(), L'\0');
  const int count = MultiByteToWideChar(set, MB_ERR_INVALID_CHARS, text.data(), length, wide.data(),
                                        length);
  wide.resize(static_cast<size_t>(count));
  return count == 0 || IsMadeUp(set, wide) ? std::nullopt : std::optional(std::move(wide));
}

std::optional<std::string> Encode(UINT set, std::wstring_view wide) {
  if (set == kUtf16) {
    std::string bytes;
    for (const wchar_t unit : wide) {
      bytes += static_cast<char>(unit & 0xFF);
      bytes += static_cast<char>(unit >> 8);
    }
    return bytes;
  }
  constexpr int kMostBytes = 4;
  const auto length = static_cast<int>(wide.size());
  std::string bytes(wide.size() * kMostBytes, '\0');
  BOOL isReplaced = FALSE;
  const bool isUtf8 = set == CP_UTF8;
  const int count = WideCharToMultiByte(
      set, isUtf8 ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS, wide.data(), length, bytes.data(),
      length * kMostBytes, nullptr, isUtf8 ? nullptr : &isReplaced);
  bytes.resize(static_cast<size_t>(count));
  return count == 0 || isReplaced != 0 ? std::nullopt : std::optional(std::move(bytes));
}

}  // namespace

struct CharsetConverter::Conversion {
  UINT from;
  UINT to;
};

CharsetConverter::CharsetConverter(const std::string& from, const std::string& to) {
  const std::optional<UINT> first = NumberOf(from);
  const std::optional<UINT> second = NumberOf(to);
  if (first && second && IsUsable(*first) && IsUsable(*second)) {
    conversion_ = std::make_unique<Conversion>(Conversion{*first, *second});
  }
}

CharsetConverter::~CharsetConverter() = default;

CharsetConverter::Outcome CharsetConverter::Append(std::string_view text, std::string& result) {
  if (!IsOpen() || text.empty()) {
    return IsOpen() ? Outcome::kConverted : Outcome::kNoSuchCharacter;
  }
  if (IsIncomplete(conversion_->from, text)) {
    return Outcome::kIncomplete;
  }
  const std::optional<std::wstring> wide = Decode(conversion_->from, text);
  const std::optional<std::string> bytes = wide ? Encode(conversion_->to, *wide) : std::nullopt;
  if (!bytes) {
    return Outcome::kNoSuchCharacter;
  }
  result += *bytes;
  return Outcome::kConverted;
}

}  // namespace velkor
