#pragma once

#include <cstdint>
#include <vector>

#include "reports/analysis_result.h"

namespace velkor::reports {

// Which functions may use floating-point registers, as far as the instructions of the program show
// it. Each function is looked at once, however often it is asked about.
class FloatingPoint {
 public:
  explicit FloatingPoint(const AnalysisResult& result);

  // True: one of the functions, or something below them, does, or it is not known that it does not.
  bool MayBeUsed(const std::vector<uint32_t>& functions) const;

 private:
  std::vector<bool> mayUse_;  // the function, or something below it
};

}  // namespace velkor::reports
