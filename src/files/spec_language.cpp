#include "files/spec_language.h"

#include <utility>

namespace velkor {

void SpecLineScanner::SkipBlanks() {
  while (!AtEnd() && codePage_.IsBlank(line_, position_)) {
    position_ += codePage_.CharLength(line_, position_);
  }
}

bool SpecLineScanner::Take(std::string_view text) {
  const bool next = line_.substr(position_).starts_with(text);
  position_ += next ? text.size() : 0;
  return next;
}

std::string_view SpecLineScanner::TakeWord() {
  const size_t start = position_;
  while (!AtEnd() && line_[position_] != ',' && !codePage_.IsBlank(line_, position_)) {
    position_ += codePage_.CharLength(line_, position_);
  }
  return line_.substr(start, position_ - start);
}

bool SpecLineScanner::AtWordEnd() const {
  return AtEnd() || line_[position_] == ',' || codePage_.IsBlank(line_, position_);
}

SpecName SpecLineScanner::TakeName() {
  const size_t start = position_;
  if (std::optional<SpecName> name = TakeQuotedName()) {
    name->written = line_.substr(start, position_ - start);
    return *std::move(name);
  }
  position_ = start;
  return SpecName::Split(TakeWord(), codePage_);
}

std::optional<SpecName> SpecLineScanner::TakeQuotedName() {
  SpecName name;
  name.quoted = true;
  name.bracketed = Take("[");
  const bool whole = TakeParts(name) && (!name.bracketed || Take("]")) && AtWordEnd();
  return whole ? std::optional(std::move(name)) : std::nullopt;
}

bool SpecLineScanner::TakeParts(SpecName& name) {
  if (std::optional<std::string> first = TakeQuoted()) {
    name.qualified = Take("#");
    (name.qualified ? name.file : name.function) = *std::move(first);
    if (name.qualified) {
      return TakeFunctionPart(name);
    }
    return true;
  }
  if (AtQuote()) {
    return false;
  }
  const size_t start = position_;
  while (!AtWordEnd()) {
    position_ += codePage_.CharLength(line_, position_);
    if (line_.substr(position_).starts_with("#\"")) {
      name.qualified = true;
      name.file = line_.substr(start, position_ - start);
      ++position_;
      return TakeFunctionPart(name);
    }
  }
  return false;
}

bool SpecLineScanner::TakeFunctionPart(SpecName& name) {
  if (!AtQuote()) {
    name.function = TakePlainPart(name.bracketed);
    return true;
  }
  std::optional<std::string> function = TakeQuoted();
  name.function = function.value_or("");
  return function.has_value();
}

std::optional<std::string> SpecLineScanner::TakeQuoted() {
  if (!AtQuote()) {
    return std::nullopt;
  }
  std::string part;
  for (size_t next = position_ + 1; next < line_.size();) {
    if (line_[next] == '"') {
      if (!line_.substr(next + 1).starts_with('"')) {
        position_ = next + 1;
        return part;
      }
      ++next;
    }
    const size_t length = codePage_.CharLength(line_, next);
    part.append(line_, next, length);
    next += length;
  }
  return std::nullopt;
}

// Up to the bracket that closes the name, where one does.
std::string_view SpecLineScanner::TakePlainPart(bool bracketed) {
  const std::string_view word = TakeWord();
  if (bracketed && word.ends_with(']') &&
      codePage_.CutLength(word, word.size() - 1) == word.size() - 1) {
    --position_;
    return word.substr(0, word.size() - 1);
  }
  return word;
}

SpecName SpecName::Split(std::string_view written, const CodePage& codePage) {
  SpecName name;
  name.written = written;
  std::string_view inside = written;
  if (written.starts_with('[')) {
    const size_t last = written.size() - 1;
    name.bracketed = last > 0 && written[last] == ']' &&
                     codePage.CutLength(written, last) == last;  // no second byte of a character
    name.unclosed = !name.bracketed;
    inside = name.bracketed ? written.substr(1, last - 1) : written;
  }
  size_t function = 0;
  for (size_t i = 0; i < inside.size(); i += codePage.CharLength(inside, i)) {
    if (inside[i] == '#') {
      name.qualified = true;
      name.file = inside.substr(0, i);
      function = i + 1;
    }
  }
  name.function = inside.substr(function);
  return name;
}

SpecName SpecName::OfText(std::string_view text, const CodePage& codePage) {
  SpecLineScanner scanner(text, codePage);
  SpecName name = scanner.TakeName();
  return name.quoted && scanner.AtEnd() ? name : Split(text, codePage);
}

std::string QuotedWhereNeeded(std::string_view part, const CodePage& codePage) {
  for (size_t i = 0; i < part.size(); i += codePage.CharLength(part, i)) {
    constexpr std::string_view kSpecial = ",#[]\"";
    if (kSpecial.find(part[i]) != kSpecial.npos || codePage.IsBlank(part, i)) {
      return Quoted(part);
    }
  }
  return std::string(part);
}

std::string Quoted(std::string_view part) {
  std::string text = "\"";
  for (const char character : part) {
    text.append(character == '"' ? 2 : 1, character);
  }
  return text + '"';
}

std::string_view LibraryTableName(std::string_view line, const CodePage& codePage) {
  SpecLineScanner scanner(line, codePage);
  scanner.SkipBlanks();
  if (scanner.AtComment()) {
    return {};
  }
  std::string_view name = scanner.TakeWord();
  if (!name.starts_with('[')) {
    return name;
  }
  name.remove_prefix(1);
  size_t close = 0;
  while (close < name.size() && name[close] != ']') {
    close += codePage.CharLength(name, close);
  }
  return name.substr(0, close);
}

bool IsSpecStatement(std::string_view line, const CodePage& codePage) {
  SpecLineScanner scanner(line, codePage);
  scanner.SkipBlanks();
  if (scanner.AtComment()) {
    return false;
  }
  scanner.TakeName();
  scanner.SkipBlanks();
  return !scanner.AtEnd();
}

}  // namespace velkor
