#include "readers/tarn/symbol_line.h"

#include <algorithm>
#include <array>

#include "files/numbers.h"

namespace velkor {

namespace {

using namespace std::string_view_literals;

constexpr CharacterSet kTypeEnd{"H"};
constexpr uint32_t kDerivedTypeMask = 3;
constexpr uint32_t kDerivedFunction = 2;

// Functions of the library whose symbols do not show that they are functions.
constexpr std::array kLibrarySymbols = {
    "_setjmp"sv,   "_sprintf"sv, "_sscanf"sv,  "_strtol"sv,   "_strtoul"sv,  "_abs"sv,
    "_div"sv,      "_labs"sv,    "_ldiv"sv,    "_itoa"sv,     "_ltoa"sv,     "_ultoa"sv,
    "_qsort"sv,    "_memcpy"sv,  "_memmove"sv, "_strcpy"sv,   "_strncpy"sv,  "_strcat"sv,
    "_strncat"sv,  "_strtok"sv,  "_memset"sv,  "_isxdigit"sv, "__tolower"sv, "__toupper"sv,
    "_strerror"sv, "_printf"sv,  "_scanf"sv,   "_vprintf"sv,  "_vsprintf"sv, "___assertfail"sv};

enum class SymbolKind { kStatic, kGlobal, kFunctionIdentifier };

std::optional<SymbolKind> ParseKind(StkLineScanner& line) {
  if (line.Match("STA_SYM")) {
    return SymbolKind::kStatic;
  }
  if (line.Match("GLV_SYM")) {
    return SymbolKind::kGlobal;
  }
  if (line.Match("IDE_FUN")) {
    return SymbolKind::kFunctionIdentifier;
  }
  return std::nullopt;
}

bool ParseName(StkLineScanner& line, SymbolKind kind, NameBuffer& buffer, std::string_view& name) {
  if (!line.SkipSeparators() || !line.Token(kSeparators, name)) {
    return false;
  }
  if (kind != SymbolKind::kFunctionIdentifier) {
    return name.starts_with('_');
  }
  const size_t first = buffer.GetCodePage().CharLength(name, 0);
  buffer.Clear();
  buffer.Append("_");
  buffer.Append(name.substr(first));
  name = buffer.Text();
  return true;
}

// The field after the next two commas, up to one of the ends.
bool FieldAfterTwo(StkLineScanner& line, const CharacterSet& ends, std::string_view& field) {
  return line.SkipSeparators() && line.SeekComma() && line.SkipSeparators() && line.SeekComma() &&
         line.SkipSeparators() && line.Token(ends, field);
}

bool HasPresetMarginMark(std::string_view field) {
  return field.size() >= 6 && field[0] == '0' && field[1] == '7' && field[5] == 'H';
}

bool IsFunctionType(std::string_view type) {
  uint32_t value = 0;
  return ParseWholeNumber(type, 16, value) == NumberResult::kOk &&
         (value & kDerivedTypeMask) == kDerivedFunction;
}

}  // namespace

bool EnterSymbolLine(StkLineScanner& line) {
  return line.SkipBlanks() && line.Expect('$') && line.SkipBlanks() && line.Match("DGS");
}

std::optional<SymbolLine> ParseSymbolFields(StkLineScanner& line, NameBuffer& buffer) {
  if (!line.SkipBlanks()) {
    return std::nullopt;
  }
  const std::optional<SymbolKind> kind = ParseKind(line);
  SymbolLine symbol;
  std::string_view fifth;
  if (!kind || !ParseName(line, *kind, buffer, symbol.name) ||
      !FieldAfterTwo(line, kSeparators, fifth)) {
    return std::nullopt;
  }
  symbol.presetMargin = HasPresetMarginMark(fifth);

  std::string_view type;
  if (!FieldAfterTwo(line, kTypeEnd, type) || type.empty()) {
    return symbol;
  }
  symbol.isFunction = *kind == SymbolKind::kFunctionIdentifier || IsFunctionType(type) ||
                      std::ranges::find(kLibrarySymbols, symbol.name) != kLibrarySymbols.end();
  symbol.isStatic = symbol.isFunction && *kind == SymbolKind::kStatic;
  return symbol;
}

}  // namespace velkor
