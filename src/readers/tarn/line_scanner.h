#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "files/text_line.h"
#include "platform/code_page.h"

namespace velkor {

// A set of bytes.
class CharacterSet {
 public:
  constexpr explicit CharacterSet(std::string_view members) {
    for (const char member : members) {
      has_[static_cast<unsigned char>(member)] = true;
      hasOrBeginsLonger_[static_cast<unsigned char>(member)] = true;
    }
    for (size_t byte = 0x80; byte < hasOrBeginsLonger_.size(); ++byte) {
      hasOrBeginsLonger_[byte] = true;
    }
  }
  constexpr bool Has(char character) const { return has_[static_cast<unsigned char>(character)]; }
  // Whether it is one of them, or may begin a character of several bytes.
  constexpr bool HasOrBeginsLonger(char character) const {
    return hasOrBeginsLonger_[static_cast<unsigned char>(character)];
  }

 private:
  std::array<bool, 256> has_{};
  std::array<bool, 256> hasOrBeginsLonger_{};
};

constexpr char kLineEnd = '\n';
constexpr CharacterSet kBlanks{" \t"};
constexpr CharacterSet kBlanksOrLineEnd{" \t\n"};
constexpr CharacterSet kSeparators{", \t"};
constexpr CharacterSet kOnlyLineEnd{"\n"};

// The line being parsed, with a cursor. The text is zero-terminated: a NUL byte ends it early. A
// line that was read whole is followed by a line-end mark, which a token may end at; a line that
// was cut, or that a NUL ends, has none. Copies nothing: valid as long as the line's bytes.
// Every operation answers whether it succeeded.
class StkLineScanner {
 public:
  explicit StkLineScanner(const CodePage& codePage) : codePage_(codePage) {}

  void SetLine(const TextLine& line) {
    text_ = line.text.substr(0, line.text.find('\0'));
    hasLineEnd_ = text_.size() == line.length;
    cursor_ = 0;
  }
  // Fails only when the cursor stands at the end before it starts.
  bool SkipBlanks() {
    if (cursor_ == End()) {
      return false;
    }
    SkipOver(kBlanks);
    return true;
  }
  // The cursor stays where it is when the character is another one.
  bool Expect(char character) {
    if (cursor_ >= text_.size() || text_[cursor_] != character) {
      return false;
    }
    ++cursor_;
    return true;
  }
  // On a difference the cursor stays; when the text ends first it moves to the end.
  template <size_t kSize>
  bool Match(const char (&literal)[kSize]) {
    constexpr size_t kLength = kSize - 1;
    const size_t start = std::min(cursor_, text_.size());
    const size_t left = text_.size() - start;
    if (left >= kLength && std::memcmp(text_.data() + start, literal, kLength) == 0) {
      cursor_ += kLength;
      return true;
    }
    if (!hasLineEnd_ && left < kLength && std::memcmp(text_.data() + start, literal, left) == 0) {
      cursor_ = End();
    }
    return false;
  }
  // What stands before the first character of ends, on which the cursor stops. When the text
  // holds none, fails with the rest of it, the line-end mark left out, and the cursor at the end.
  bool Token(const CharacterSet& ends, std::string_view& token);
  // Fails when the text ends before another character.
  bool SkipSeparators() {
    SkipOver(kSeparators);
    return cursor_ < End();
  }
  // Up to the next comma, which is not consumed.
  bool SeekComma() {
    size_t comma = cursor_;
    while (comma < text_.size() && text_[comma] != ',') {
      ++comma;
    }
    const bool found = comma < text_.size();
    cursor_ = found ? comma : cursor_;
    return found;
  }

 private:
  size_t End() const { return text_.size() + (hasLineEnd_ ? 1 : 0); }
  void SkipOver(const CharacterSet& characters) {
    while (cursor_ < text_.size() && characters.Has(text_[cursor_])) {
      ++cursor_;
    }
  }

  const CodePage& codePage_;
  std::string_view text_;
  bool hasLineEnd_ = false;
  size_t cursor_ = 0;
};

}  // namespace velkor
