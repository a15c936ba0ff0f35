#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "reports/analysis_result.h"

namespace velkor::reports {

// "main, util.c#step and 3 more": the given functions out of count.
std::string NameList(const AnalysisResult& result, std::span<const uint32_t> named, uint64_t count);
// All of the list, or as many as a line bears.
std::string NameList(const AnalysisResult& result, std::span<const uint32_t> functions);

}  // namespace velkor::reports
