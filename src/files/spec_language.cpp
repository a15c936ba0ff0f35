#include "files/spec_language.h"

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

SpecName SpecName::Split(std::string_view written, const CodePage& codePage) {
  SpecName name;
  if (written.starts_with('[')) {
    const size_t last = written.size() - 1;
    name.bracketed = last > 0 && written[last] == ']' &&
                     codePage.CutLength(written, last) == last;  // no second byte of a character
    name.unclosed = !name.bracketed;
    written = name.bracketed ? written.substr(1, last - 1) : written;
  }
  name.function = written;
  for (size_t i = 0; i < written.size(); i += codePage.CharLength(written, i)) {
    if (written[i] == '#') {
      name.qualified = true;
      name.file = written.substr(0, i);
      name.function = written.substr(i + 1);
    }
  }
  return name;
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
  scanner.TakeWord();
  scanner.SkipBlanks();
  return !scanner.AtEnd();
}

}  // namespace velkor
