#include "manual/roff.h"

#include <cctype>

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

std::string Bold(std::string_view text) {
  return "\\fB" + Roff(text) + "\\fR";
}

std::string Italic(std::string_view text) {
  return "\\fI" + Roff(text) + "\\fR";
}

std::string Sentence(std::string_view text) {
  std::string sentence(text);
  if (!sentence.empty()) {
    sentence.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
  }
  return sentence + (sentence.ends_with('.') || sentence.ends_with('?') ? "" : ".");
}

}  // namespace velkor::manual
