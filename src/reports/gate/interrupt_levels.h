#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "reports/gate/gate_input.h"

namespace velkor::reports {

// Handlers of which only one is active at a time.
struct InterruptLevel {
  uint32_t deepest = 0;  // the handler that counts
  std::vector<uint32_t> handlers;
};

// What can lie on a stack one upon the other, by what the configuration and the vector table say.
struct InterruptLevels {
  std::vector<InterruptLevel> levels;  // those that count; with a nesting, that many
  std::vector<uint32_t> handlers;      // all that are counted, ascending
  std::vector<uint32_t> ignored;       // ascending
  std::vector<uint32_t> unlisted;      // that nobody has named: a level each
  struct Missing {
    Configuration::Name name;
    std::string error;
  };
  std::vector<Missing> missing;  // named, but not found
  std::vector<GateFault> faults;
};

InterruptLevels LevelsOf(const GateInput& input);

// Of several functions the one whose known bytes are the most, the first of equal ones.
uint32_t DeepestOf(const AnalysisResult& result, const std::vector<uint32_t>& functions);

}  // namespace velkor::reports
