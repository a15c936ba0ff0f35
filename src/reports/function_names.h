#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "reports/analysis_result.h"

namespace velkor::reports {

// A name in bytes of the code page, as a line of the text output shows it: UTF-8, one line, and
// no longer than a line bears.
std::string ShownName(const AnalysisResult& result, std::string_view name);

// "main, util.c#step and 3 more": the given functions out of count.
std::string NameList(const AnalysisResult& result, const StkFunctionList& named, uint64_t count);
// All of the list, or as many as a line bears.
std::string NameList(const AnalysisResult& result, const StkFunctionList& functions);

}  // namespace velkor::reports
