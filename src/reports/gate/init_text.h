#pragma once

#include <string>
#include <string_view>

#include "readers/program_facts.h"
#include "reports/analysis_result.h"

namespace velkor::reports {

// What a new configuration is made from. Paths are those that it is to state.
struct InitInput {
  const AnalysisResult& result;
  const ProgramFacts& facts;
  std::string input;
  std::string elf;         // empty: none
  bool isProject = false;  // the input is a project file
};

// A velkor.toml with what the input shows: stacks of main and of what may be tasks, handlers as
// levels to be merged, and what has no bound. What only the user knows is left open, and its line
// says so.
std::string InitText(const InitInput& input);

// As a text of such a file, with its quotes, on one line.
std::string TomlText(std::string_view text);

}  // namespace velkor::reports
