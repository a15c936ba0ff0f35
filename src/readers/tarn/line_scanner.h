#pragma once

#include <array>
#include <cstddef>
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
    }
  }
  constexpr bool Has(char character) const { return has_[static_cast<unsigned char>(character)]; }

 private:
  std::array<bool, 256> has_{};
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
  bool Match(std::string_view literal);
  // What stands before the first character of ends, on which the cursor stops. When the text
  // holds none, fails with the rest of it, the line-end mark left out, and the cursor at the end.
  bool Token(const CharacterSet& ends, std::string_view& token);
  // Fails when the text ends before another character.
  bool SkipSeparators() {
    SkipOver(kSeparators);
    return cursor_ < End();
  }
  // Up to the next comma, which is not consumed.
  bool SeekComma();

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
