#include "readers/code_skip.h"

#include "readers/line_scanner.h"

namespace velkor {

namespace {

// What labels, segment directives and the calls that matter begin with.
constexpr CharacterSet kStoring{"_bcBCD"};

size_t SkipBlanks(std::string_view line, size_t position) {
  while (position < line.size() && kBlanks.Has(line[position])) {
    ++position;
  }
  return position;
}

size_t SkipWord(std::string_view line, size_t position) {
  while (position < line.size() && !kBlanks.Has(line[position])) {
    ++position;
  }
  return position;
}

// Of a word that begins like one that stores something: whether its second character ends the
// likeness, as in "bnz" and "cmp".
bool IsOtherWord(std::string_view line, size_t word) {
  if (word + 1 >= line.size()) {
    return true;
  }
  const char second = line[word + 1];
  switch (line[word]) {
    case 'b':  // "br", "bs_F"
      return second != 'r' && second != 's';
    case 'c':  // "call", "cseg"
      return second != 'a' && second != 's' && second != 'S';
    default:
      return false;
  }
}

bool IsPlain(std::string_view line) {
  if (line.empty()) {
    return true;
  }
  if (line[0] == ';') {  // a comment, or the heading of the code information block
    return line.size() < 3 || line[2] != '*';
  }
  const size_t word = SkipBlanks(line, 0);
  if (word == line.size()) {
    return true;
  }
  if (kStoring.Has(line[word]) && !IsOtherWord(line, word)) {
    return false;
  }
  const size_t second = SkipBlanks(line, SkipWord(line, word));
  return second + 1 >= line.size() || (line[second + 1] | 0x20) != 's';  // no "CSEG"
}

}  // namespace

SkippedLines SkipPlainCode(std::string_view text, uint32_t maxLines, size_t maxLength) {
  SkippedLines skipped;
  while (skipped.lines < maxLines) {
    const size_t length = text.find('\n');
    if (length == std::string_view::npos || length > maxLength ||
        !IsPlain(text.substr(0, length))) {
      break;
    }
    text.remove_prefix(length + 1);
    skipped.bytes += length + 1;
    ++skipped.lines;
  }
  return skipped;
}

}  // namespace velkor
