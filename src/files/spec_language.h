#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/code_page.h"

namespace velkor {

// How stack size specification files are written: what separates the words of a line, and of what
// parts the name of a function is made. The command line names functions in the same way. Looks
// nothing up and reports nothing.

// The name of a function as it is written, taken apart: "step", "util.c#step", "[memcpy]"; with
// double quotes around a part that such a name cannot hold, a quote within doubled:
// "\"my util.c\"#step".
struct SpecName {
  static constexpr size_t kMaxFunctionLength = 1022;

  std::string_view written;
  std::string file;  // empty also when nothing stands before the "#"
  std::string function;
  bool qualified = false;
  bool bracketed = false;
  bool unclosed = false;  // begins with a bracket that is not closed at the end, and kept here
  bool quoted = false;    // a part is: then the function part is the C name, to the letter

  // The function part may be as long.
  size_t FunctionLimit() const { return kMaxFunctionLength - (bracketed ? 1U : 0U); }

  // Without regard to quotes.
  static SpecName Split(std::string_view written, const CodePage& codePage);
  // The whole text is one name, which may hold blanks and commas where a line could not.
  static SpecName OfText(std::string_view text, const CodePage& codePage);
};

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
  // The same, but quotes hold commas and blanks. Quotes that make no name are ordinary characters.
  SpecName TakeName();

 private:
  bool AtWordEnd() const;
  bool AtQuote() const { return !AtEnd() && line_[position_] == '"'; }
  std::optional<SpecName> TakeQuotedName();
  // The parts of a name of which one is quoted.
  bool TakeParts(SpecName& name);
  bool TakeFunctionPart(SpecName& name);
  // A quoted part; none, and nothing passed, where none comes next.
  std::optional<std::string> TakeQuoted();
  std::string_view TakePlainPart(bool bracketed);

  const std::string_view line_;
  const CodePage& codePage_;
  size_t position_ = 0;
};

// In double quotes where it holds a blank, a comma, "#", a bracket or a quote.
std::string QuotedWhereNeeded(std::string_view part, const CodePage& codePage);
std::string Quoted(std::string_view part);

// The name with which a line of a library table begins, up to the bracket that closes it; empty for
// a line that names none.
std::string_view LibraryTableName(std::string_view line, const CodePage& codePage);
// Whether a line states something: it is no comment, and more than blanks or a name alone.
bool IsSpecStatement(std::string_view line, const CodePage& codePage);

}  // namespace velkor
