#include "platform/ini_text.h"

namespace velkor {

// Blanks, line ends, quotes and signs are no second byte of any character: bytes are enough.
std::string_view TrimIniText(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\v\f";
  const size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string_view UnquoteIniValue(std::string_view value) {
  const bool quoted = value.size() >= 2 && value.front() == value.back() &&
                      (value.front() == '"' || value.front() == '\'');
  return quoted ? value.substr(1, value.size() - 2) : value;
}

// "]" is one of the bytes that may also be the second half of a character.
size_t FindLastIniBracket(std::string_view line, const CodePage& codePage) {
  size_t last = std::string_view::npos;
  for (size_t position = 0; position < line.size();
       position += codePage.CharLength(line, position)) {
    if (line[position] == ']') {
      last = position;
    }
  }
  return last;
}

}  // namespace velkor
