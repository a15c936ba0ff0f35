#pragma once

#include <optional>
#include <vector>

#include "reports/gate/finding_places.h"
#include "reports/gate/gate_input.h"
#include "reports/gate/interrupt_levels.h"
#include "reports/gate/stack_figures.h"
#include "reports/gate/stack_needs.h"

namespace velkor::reports {

// What was not read, or not read as it was meant: modules, statements, and what else makes numbers
// doubtful. An error wherever something is missing.
std::vector<Finding> InputFindings(const GateInput& input, FindingPlaces& places);

// What the configuration names and the program lacks: entry-not-found and stack-size.
std::vector<Finding> NameFindings(const StackNeeds& needs, const InterruptLevels& interrupts,
                                  FindingPlaces& places);

// Nothing tells which interrupts may come, and nothing states it either.
std::optional<Finding> NoInterruptsKnown(const GateInput& input, const StackFigures& figures,
                                         FindingPlaces& places);

}  // namespace velkor::reports
