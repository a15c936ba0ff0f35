#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "reports/gate/baseline.h"
#include "reports/gate/gate_input.h"
#include "reports/gate/gate_result.h"
#include "reports/gate/source_places.h"

namespace velkor::reports {

struct GateOutcome {
  std::optional<GateReport> report;  // none: there are faults
  std::vector<GateFault> faults;     // in the order of their places, each once
};

// Holds the stacks of the configuration, and the limits, against what the analysis says. baseline:
// none: there is none. Linear in functions and calls for each stack.
GateOutcome CheckGate(const GateInput& input, const Baseline* baseline, SourcePlaces& sources);

// What a later gate is to be held against.
Baseline BaselineOf(const GateReport& report, const AnalysisResult& result, std::string project,
                    std::string commit);

// Whether a baseline of that project can be one of this one: both are paths of a configuration
// below its repository, or below less of it.
bool IsSameProject(std::string_view left, std::string_view right);

}  // namespace velkor::reports
