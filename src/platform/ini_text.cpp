#include "platform/ini_text.h"

#include <algorithm>

namespace velkor {
namespace {

// Blanks, line ends, quotes and signs are no second byte of any character: bytes are enough.
std::string_view Trim(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\v\f";
  const size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string_view Unquote(std::string_view value) {
  const bool quoted = value.size() >= 2 && value.front() == value.back() &&
                      (value.front() == '"' || value.front() == '\'');
  return quoted ? value.substr(1, value.size() - 2) : value;
}

// "]" is one of the bytes that may also be the second half of a character.
size_t FindLastBracket(std::string_view line, const CodePage& codePage) {
  size_t last = std::string_view::npos;
  for (size_t position = 0; position < line.size();
       position += codePage.CharLength(line, position)) {
    if (line[position] == ']') {
      last = position;
    }
  }
  return last;
}

}  // namespace

IniLines::IniLines(std::string_view text, const CodePage& codePage)
    : rest_(text), codePage_(codePage) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (rest_.starts_with(kByteOrderMark)) {
    rest_.remove_prefix(kByteOrderMark.size());
  }
}

bool IniLines::Next(Line& line) {
  while (!rest_.empty()) {
    const size_t length = std::min(rest_.find_first_of("\r\n"), rest_.size());
    const std::string_view text = Trim(rest_.substr(0, length));
    rest_.remove_prefix(length);
    rest_.remove_prefix(rest_.starts_with("\r\n") ? 2 : std::min<size_t>(1, rest_.size()));
    line.number = ++number_;
    if (Parse(text, line)) {
      return true;
    }
  }
  return false;
}

bool IniLines::Parse(std::string_view text, Line& line) {
  if (text.empty() || text.front() == ';') {
    return false;
  }
  line.isSection = text.front() == '[';
  const size_t end = line.isSection ? FindLastBracket(text, codePage_) : text.find('=');
  if (end == std::string_view::npos) {
    return false;
  }
  if (line.isSection) {
    line.name = Trim(text.substr(1, end - 1));
    inSection_ = true;
  } else {
    line.name = Trim(text.substr(0, end));
    line.value = Unquote(Trim(text.substr(end + 1)));
  }
  return inSection_;
}

std::string ReadIniText(InputFile& file, size_t most) {
  constexpr size_t kChunk = size_t{64} << 10;
  std::string text;
  std::string chunk(kChunk, '\0');
  while (text.size() < most) {
    const size_t count = file.Read(chunk.data(), std::min(kChunk, most - text.size()));
    if (count == 0) {
      break;
    }
    text.append(chunk, 0, count);
  }
  return text;
}

}  // namespace velkor
