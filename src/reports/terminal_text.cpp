#include "reports/terminal_text.h"

#include <algorithm>

namespace velkor::reports {
namespace {

bool IsControl(char c) {
  const auto value = static_cast<unsigned char>(c);
  return (value < 0x20 && c != '\t') || value == 0x7F;
}

bool StartsCharacter(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
}

}  // namespace

bool IsPlainLine(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return c >= 0x20 && c < 0x7F; });
}

std::string OneLine(std::string_view utf8) {
  if (IsPlainLine(utf8)) {
    return std::string(utf8);
  }
  std::string line;
  line.reserve(utf8.size());
  for (size_t i = 0; i < utf8.size(); ++i) {
    const char c = utf8[i];
    if (c == '\r' && utf8.substr(i + 1, 1) == "\n") {
      continue;
    }
    if (c == '\n' || c == '\r') {
      line += ' ';
    } else if (IsControl(c)) {
      line += "\xEF\xBF\xBD";
    } else if (c == '\xC2' && i + 1 < utf8.size() &&
               static_cast<unsigned char>(utf8[i + 1]) < 0xA0) {
      line += "\xEF\xBF\xBD";  // U+0080 to U+009F
      ++i;
    } else {
      line += c;
    }
  }
  return line;
}

std::string CutName(std::string_view utf8) {
  constexpr size_t kMostCharacters = 60;
  std::string line = OneLine(utf8);
  const size_t kept = FirstCharacters(line, kMostCharacters).size();
  if (kept < line.size()) {
    line.resize(kept);
    line += "...";
  }
  return line;
}

std::string_view FirstCharacters(std::string_view utf8, size_t count) {
  size_t end = 0;
  for (size_t characters = 0; end < utf8.size(); ++end) {
    if (StartsCharacter(utf8[end]) && ++characters > count) {
      break;
    }
  }
  return utf8.substr(0, end);
}

size_t CharacterCount(std::string_view utf8) {
  size_t count = 0;
  for (const char c : utf8) {
    count += StartsCharacter(c) ? 1U : 0U;
  }
  return count;
}

}  // namespace velkor::reports
