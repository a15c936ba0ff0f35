#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/function_table.h"
#include "core/specification_source.h"

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

// taken: which functions, by index, an earlier line has stated something of.
LiteralLine ReadLiterally(std::string_view line, SpecificationKind kind,
                          const StkFunctionTable& table, const std::vector<bool>& taken);

// A file's lines, whatever ends them.
std::vector<std::string> LiteralLines(std::string_view text);

}  // namespace velkor::testing
