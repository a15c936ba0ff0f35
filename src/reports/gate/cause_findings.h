#pragma once

#include <vector>

#include "reports/gate/baseline.h"
#include "reports/gate/bound_causes.h"
#include "reports/gate/finding_places.h"
#include "reports/gate/gate_input.h"
#include "reports/gate/stack_needs.h"
#include "reports/gate/unlisted.h"

namespace velkor::reports {

// What a baseline may hold, so that it only warns: no-bound for each cause, unlisted-interrupt and
// unlisted-task. Without a baseline the latter two warn.
std::vector<Finding> CauseFindings(const GateInput& input, const StackNeeds& needs,
                                   const InterruptLevels& interrupts,
                                   const std::vector<BoundCause>& causes, const Baseline* baseline,
                                   FindingPlaces& places);

// What the baseline counts and the configuration has no more, though the program has it.
std::vector<Finding> GoneFindings(const GateInput& input, const StackNeeds& needs,
                                  const InterruptLevels& interrupts, const Baseline& baseline,
                                  FindingPlaces& places);

// As a baseline holds it; none of another rule.
std::vector<Baseline::Cause> CausesOf(const std::vector<Finding>& findings);

}  // namespace velkor::reports
