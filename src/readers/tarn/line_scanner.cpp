#include "readers/tarn/line_scanner.h"

#include <algorithm>

namespace velkor {

bool StkLineScanner::Token(const CharacterSet& ends, std::string_view& token) {
  const size_t start = std::min(cursor_, text_.size());
  size_t end = start;
  while (true) {
    while (end < text_.size() && !ends.HasOrBeginsLonger(text_[end])) {
      ++end;
    }
    if (end >= text_.size() || ends.Has(text_[end])) {
      break;
    }
    end += codePage_.CharLength(text_, end);
  }
  token = text_.substr(start, end - start);
  const bool ended = end < text_.size() || (hasLineEnd_ && ends.Has(kLineEnd) && cursor_ < End());
  cursor_ = ended ? end : End();
  return ended;
}

}  // namespace velkor
