#include "readers/tarn/line_scanner.h"

#include <algorithm>

namespace velkor {

bool StkLineScanner::Match(std::string_view literal) {
  const std::string_view rest = text_.substr(std::min(cursor_, text_.size()));
  if (rest.starts_with(literal)) {
    cursor_ += literal.size();
    return true;
  }
  if (!hasLineEnd_ && literal.starts_with(rest)) {
    cursor_ = End();
  }
  return false;
}

bool StkLineScanner::Token(const CharacterSet& ends, std::string_view& token) {
  const size_t start = std::min(cursor_, text_.size());
  size_t end = start;
  while (end < text_.size() && !ends.Has(text_[end])) {
    const bool isAscii = static_cast<unsigned char>(text_[end]) < 0x80;
    end += isAscii ? 1 : codePage_.CharLength(text_, end);
  }
  token = text_.substr(start, end - start);
  const bool ended = end < text_.size() || (hasLineEnd_ && ends.Has(kLineEnd) && cursor_ < End());
  cursor_ = ended ? end : End();
  return ended;
}

bool StkLineScanner::SeekComma() {
  const size_t comma = text_.find(',', cursor_);
  if (comma == std::string_view::npos) {
    return false;
  }
  cursor_ = comma;
  return true;
}

}  // namespace velkor
