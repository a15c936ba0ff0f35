#pragma once

#include <cstddef>
#include <string_view>

#include "platform/code_page.h"

namespace velkor {

// How stack size specification files are written: what separates the words of a line, and of what
// parts the name of a function is made. The command line names functions in the same way. Looks
// nothing up and reports nothing.

// Walks along one line. Used once, where it was made.
class SpecLineScanner {
 public:
  SpecLineScanner(std::string_view line, const CodePage& codePage)
      : line_(line), codePage_(codePage) {}

  void SkipBlanks();
  bool AtEnd() const { return position_ == line_.size(); }
  // Before the first word: the rest of the line is a comment.
  bool AtComment() const { return !AtEnd() && line_[position_] == '#'; }
  // Passes the text when it comes next.
  bool Take(std::string_view text);
  // Up to the next comma, the next blank or the end of the line.
  std::string_view TakeWord();

 private:
  const std::string_view line_;
  const CodePage& codePage_;
  size_t position_ = 0;
};

// The name of a function as it is written, taken apart: "step", "util.c#step", "[memcpy]".
struct SpecName {
  std::string_view file;  // empty also when nothing stands before the "#"
  std::string_view function;
  bool qualified = false;
  bool bracketed = false;
  bool unclosed = false;  // begins with a bracket that is not closed at the end, and kept here

  static SpecName Split(std::string_view written, const CodePage& codePage);
};

// The name with which a line of a library table begins, up to the bracket that closes it; empty for
// a line that names none.
std::string_view LibraryTableName(std::string_view line, const CodePage& codePage);
// Whether a line states something: it is no comment, and more than blanks or a name alone.
bool IsSpecStatement(std::string_view line, const CodePage& codePage);

}  // namespace velkor
