#pragma once

#include <vector>

#include "core/function_table.h"
#include "platform/host.h"
#include "readers/program_input.h"
#include "reports/gate/gate.h"

namespace velkor::reports {

// The gate of an analysed input, as its velkor.toml states it. Refers to all that it is made of. In
// the thread that owns the tables.
class InputGate {
 public:
  InputGate(const ProgramInput& input, const StkFunctionTable& functions,
            const AnalysisResult& result, const Host& host);

  // There is a velkor.toml.
  bool IsConfigured() const { return input_.Settings() != nullptr; }
  GateOutcome Check(const std::vector<StackLimit>& limits, const Baseline* baseline);
  // A stack that grows against a baseline is a finding.
  bool ChecksGrowth() const { return IsConfigured() && input_.Settings()->gate.growth.has_value(); }
  // All of velkor.toml. None where there is no such file, or it cannot be asked.
  std::vector<GateStack> Stacks();
  // That the function is an entry of. None where there is no velkor.toml, or it cannot be asked.
  std::vector<GateStack> StacksOf(uint32_t function);
  SourcePlaces& Sources() { return sources_; }

 private:
  const ProgramInput& input_;
  const StkFunctionTable& functions_;
  const AnalysisResult& result_;
  SourcePlaces sources_;
};

}  // namespace velkor::reports
