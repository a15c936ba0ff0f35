#pragma once

#include <cstdint>
#include <vector>

#include "reports/analysis_result.h"

namespace velkor::reports {

// Which functions may use floating-point registers, as far as an analysis shows it.
class FloatingPoint {
 public:
  explicit FloatingPoint(const AnalysisResult& result) : result_(result) {}

  // True: one of the functions, or something below them, does, or it is not known that it does not.
  bool MayBeUsed(const std::vector<uint32_t>& functions);

 private:
  const AnalysisResult& result_;
  std::vector<bool> met_;
};

}  // namespace velkor::reports
