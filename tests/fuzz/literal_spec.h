#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/function_table.h"
#include "core/specification_source.h"
#include "messages/reporter.h"

namespace velkor::testing {

// What one line of a specification file means, worked out character by character and by a search
// through all functions, without any thought of cost. Shares no code with the reader.
struct LiteralLine {
  std::string error;  // the message's code; empty: none. Then nothing else counts.
  StkFunction* function = nullptr;
  bool statesSomething = false;
  uint32_t margin = kNoMargin;
  uint32_t depth = kNoDepth;
  StkFunctionList callees;  // in the order of the line
};

// What FindBySpecName must find, by a walk through all functions.
StkFunction* FindLiterally(const StkFunctionTable& table, const std::string& file,
                           const std::string& name, bool bracketed);

// What is stated about one function.
struct Statement {
  uint32_t margin = kNoMargin;
  uint32_t depth = kNoDepth;
  std::vector<uint32_t> callees;  // by index, ascending

  bool operator==(const Statement&) const = default;
  bool StatesNothing() const { return *this == Statement(); }
};

// By index of the function; none where nothing is stated.
using Statements = std::vector<std::optional<Statement>>;

Statements InForce(const StkFunctionTable& table);
// Without depths where there is no recursion: they change no total, and no reading keeps them.
Statements Effective(Statements statements, const StkFunctionTable& table);

struct LiteralChoices {
  SpecificationKind kind = SpecificationKind::kSystemFile;
  BoxAnswer answer = BoxAnswer::kIgnore;  // to every stop question
  bool fromCommandLine = false;
};

// A file's effect as its lines, whatever ends them, make it one by one.
class LiteralFile {
 public:
  // table: as before the reading.
  LiteralFile(std::string_view text, const LiteralChoices& choices, const StkFunctionTable& table);

  Statements stated;
  std::vector<std::optional<uint32_t>> librarySizes;  // by index
  std::vector<std::string> errors;                    // the codes that are told
  // A line states something that is neither taken nor kept.
  bool hasStray = false;

 private:
  bool GoesOnAfter(const std::string& error);
  void Apply(const LiteralLine& line);

  const LiteralChoices choices_;
};

}  // namespace velkor::testing
