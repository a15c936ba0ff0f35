#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "readers/configuration.h"
#include "readers/program_facts.h"
#include "reports/analysis_result.h"
#include "reports/gate/gate_names.h"

namespace velkor::reports {

// A stack that the command line states: nothing is added to what its entry takes but frame and
// switch of the configuration.
struct StackLimit {
  std::string entry;
  uint64_t bytes = 0;
};

// What the gate is asked of. Refers to all of it.
struct GateInput {
  const AnalysisResult& result;
  const Configuration& configuration;
  const ProgramFacts& facts;
  const NameMeanings& names;
  std::vector<StackLimit> limits;
  bool isConfigured = true;  // false: there is no velkor.toml, and only limits are checked
};

// Why the gate cannot be asked at all. A phrase.
struct GateFault {
  TextPlace place;  // in the configuration
  std::string text;
};

// The function that a name means; empty with the reason where it does not say one.
struct FoundFunction {
  std::optional<uint32_t> function;
  std::string error;
};

// The name of a handler may be any name of the vector table's.
FoundFunction FindHandler(const GateInput& input, const std::string& name);
FoundFunction FindEntry(const GateInput& input, const std::string& name);

// What names a function in every build: its statement, without the numbers of clones.
std::string StableName(const AnalysisResult& result, uint32_t function);

}  // namespace velkor::reports
