#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "reports/gate/gate_result.h"

namespace velkor::reports {

// What a kind of finding means.
struct GateRule {
  std::string_view name;
  std::string_view title;  // a phrase
  std::string_view text;   // sentences
  std::string_view help;   // sentences: what to do
  Severity severity;       // mostly
};

// All that the gate has itself, by name. A note of an input that something was not read is a
// finding of the note's rule.
std::span<const GateRule> GateRules();
// None: a note's.
const GateRule* FindGateRule(std::string_view name);

// What to do: what the finding says itself, else its rule.
std::string_view HelpOf(const Finding& finding);

}  // namespace velkor::reports
