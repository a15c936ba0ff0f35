#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "core/function_table.h"
#include "messages/messages.h"

namespace velkor::testing {

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

// What the text of a stk system file states about the functions of an analysis.
class StatedFile {
 public:
  StatedFile(std::string_view text, const StkFunctionTable& table, const StkMessages& messages);

  const Statements& Stated() const { return stated_; }
  // A line states something about no function of the analysis, or about one a second time.
  bool HasStray() const { return hasStray_; }
  // All of it is in force.
  bool IsCoveredBy(const Statements& inForce) const;

 private:
  void TakeLine(std::string_view line, const StkFunctionTable& table, const StkMessages& messages);

  Statements stated_;
  bool hasStray_ = false;
};

}  // namespace velkor::testing
