#include "reports/html_text.h"

#include "reports/terminal_text.h"

namespace velkor::reports {
namespace {

std::string EscapedLine(std::string_view line) {
  std::string text;
  for (const char c : OneLine(line)) {
    switch (c) {
      case '&':
        text += "&amp;";
        break;
      case '<':
        text += "&lt;";
        break;
      case '>':
        text += "&gt;";
        break;
      case '"':
        text += "&quot;";
        break;
      case '\'':
        text += "&#39;";
        break;
      default:
        text += c;
    }
  }
  return text;
}

}  // namespace

std::string HtmlText(std::string_view utf8) {
  std::string text;
  for (size_t start = 0;;) {
    const size_t end = utf8.find('\n', start);
    text += EscapedLine(utf8.substr(start, end - start));
    if (end == std::string_view::npos) {
      return text;
    }
    text += '\n';
    start = end + 1;
  }
}

std::string HtmlName(std::string_view utf8) {
  return "<bdi>" + HtmlText(OneLine(utf8)) + "</bdi>";
}

}  // namespace velkor::reports
