#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "reports/gate/gate_input.h"
#include "reports/gate/target_table.h"

namespace velkor::reports {

// What lies on the stacks of one program beside its functions: stated in the configuration, or from
// the table by target and RTOS, which the program tells where they are not stated.
class StackFigures {
 public:
  StackFigures(const GateInput& input, const TargetTable& table);

  const std::string& Target() const { return target_; }  // empty: not known
  const std::string& Rtos() const { return rtos_; }      // "none": there is none

  // stack: what it states itself wins; none: one of the command line. usesFloatingPoint: something
  // that runs there may. None where neither the configuration nor the table has a figure.
  std::optional<uint64_t> Frame(const Configuration::Stack* stack, bool usesFloatingPoint) const;
  std::optional<uint64_t> Switch(const Configuration::Stack* stack, bool usesFloatingPoint) const;
  // Whether any of the two depends on floating point.
  bool AskForFloatingPoint() const;

  // Why there is none.
  GateFault NoFrame(const Configuration::Stack* stack) const;
  GateFault NoSwitch(const Configuration::Stack* stack) const;

 private:
  GateFault Lacking(std::string_view key, std::string_view of,
                    const Configuration::Stack* stack) const;

  const GateInput& input_;
  std::string target_;
  std::string rtos_;
  const StackFigure* frame_;   // none: the table has none
  const StackFigure* switch_;  // likewise
};

}  // namespace velkor::reports
