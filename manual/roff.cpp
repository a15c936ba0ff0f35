#include "manual/roff.h"

#include <cctype>
#include <sstream>

namespace velkor::manual {

std::string Roff(std::string_view text) {
  std::string roff = text.starts_with('.') || text.starts_with('\'') ? "\\&" : "";
  for (const char c : text) {
    switch (c) {
      case '\\':
        roff += "\\e";
        break;
      case '-':
        roff += "\\-";
        break;
      case '\'':
        roff += "\\(aq";
        break;
      default:
        roff += c;
    }
  }
  return roff;
}

std::string Lines(std::string_view text) {
  constexpr size_t kWidth = 79;
  std::istringstream words{std::string(text)};
  std::string lines;
  size_t width = 0;
  for (std::string word; words >> word;) {
    word = Roff(word);
    const bool fits = width + word.size() < kWidth;
    lines += lines.empty() ? "" : fits ? " " : "\n";
    width = (fits ? width + 1 : 0) + word.size();
    lines += word;
  }
  return lines;
}

std::string Bold(std::string_view text) {
  return "\\fB" + Roff(text) + "\\fR";
}

std::string Italic(std::string_view text) {
  return "\\fI" + Roff(text) + "\\fR";
}

std::string Sentence(std::string_view text) {
  std::string sentence(text);
  const size_t point = text.find('.');
  const bool isName = point < text.find(' ') && point + 1 < text.size();
  if (!sentence.empty() && !isName) {
    sentence.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
  }
  return sentence + (sentence.ends_with('.') || sentence.ends_with('?') ? "" : ".");
}

}  // namespace velkor::manual
