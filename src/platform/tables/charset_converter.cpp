#include "platform/charset_converter.h"

#include <algorithm>

#include "platform/characters.h"
#include "platform/letter_case.h"
#include "platform/tables/charset_tables.h"

namespace velkor {
namespace {

std::string Squeezed(std::string_view name) {
  std::string squeezed;
  for (const char c : name) {
    if (c != '-' && c != '_') {
      squeezed += static_cast<char>(UpperAscii(static_cast<unsigned char>(c)));
    }
  }
  return squeezed;
}

// What the bytes of a set are; none for one that is not known.
const char16_t* SingleBytes(const std::string& name) {
  const auto found =
      std::ranges::find_if(kSingleByteTables, [wanted = Squeezed(name)](const auto& table) {
        return Squeezed(table.name) == wanted;
      });
  return found == kSingleByteTables.end() ? nullptr : found->unicode;
}

bool AppendFromSingleBytes(std::string_view text, const char16_t* unicode, std::string& result) {
  for (size_t position = 0; position < text.size(); ++position) {
    const char16_t unit = unicode[ByteAt(text, position)];
    if (unit == kReplacementCharacter) {
      return false;
    }
    result += static_cast<char>(unit & 0xFFU);
    result += static_cast<char>(unit >> 8U);
  }
  return true;
}

bool AppendFromShiftJis(std::string_view text, const char16_t* /*unicode*/, std::string& result) {
  for (size_t position = 0; position < text.size(); ++position) {
    unsigned bytes = ByteAt(text, position);
    auto found = std::ranges::lower_bound(kShiftJisToUnicode, bytes, {}, &ShiftJisCharacter::bytes);
    if ((found == kShiftJisToUnicode.end() || found->bytes != bytes) &&
        position + 1 < text.size()) {
      bytes = (bytes << 8U) | ByteAt(text, ++position);
      found = std::ranges::lower_bound(kShiftJisToUnicode, bytes, {}, &ShiftJisCharacter::bytes);
    }
    if (found == kShiftJisToUnicode.end() || found->bytes != bytes) {
      return false;
    }
    AppendUtf8(found->unicode, result);
  }
  return true;
}

bool AppendToShiftJis(std::string_view text, const char16_t* /*unicode*/, std::string& result) {
  for (size_t position = 0, length = 0; position < text.size(); position += length) {
    length = Utf8Length(text, position);
    const char32_t character = DecodeUtf8(text.substr(position, length));
    const auto found =
        std::ranges::lower_bound(kUnicodeToShiftJis, character, {}, &ShiftJisCharacter::unicode);
    if (found == kUnicodeToShiftJis.end() || found->unicode != character) {
      return false;
    }
    if (found->bytes > 0xFF) {
      result += static_cast<char>(found->bytes >> 8U);
    }
    result += static_cast<char>(found->bytes & 0xFFU);
  }
  return true;
}

}  // namespace

struct CharsetConverter::Conversion {
  bool (*append)(std::string_view text, const char16_t* unicode, std::string& result);
  const char16_t* unicode;  // of a set of single bytes
};

CharsetConverter::CharsetConverter(const std::string& from, const std::string& to) {
  Conversion conversion{nullptr, nullptr};
  if (from == "CP932" && to == "UTF-8") {
    conversion.append = AppendFromShiftJis;
  } else if (from == "UTF-8" && to == "CP932") {
    conversion.append = AppendToShiftJis;
  } else if (to == "UTF-16LE") {
    conversion.unicode = SingleBytes(from);
    conversion.append = conversion.unicode == nullptr ? nullptr : AppendFromSingleBytes;
  }
  if (conversion.append != nullptr) {
    conversion_ = std::make_unique<Conversion>(conversion);
  }
}

CharsetConverter::~CharsetConverter() = default;

CharsetConverter::Outcome CharsetConverter::Append(std::string_view text, std::string& result) {
  return IsOpen() && conversion_->append(text, conversion_->unicode, result)
             ? Outcome::kConverted
             : Outcome::kNoSuchCharacter;
}

}  // namespace velkor
