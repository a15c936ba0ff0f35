#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "reports/analysis_result.h"
#include "reports/result_output.h"

namespace velkor::reports {

// One of the things that are said first of an analysis.
struct HeadRow {
  std::string_view label;
  std::string text;  // one line
};
// What was read, and of how many top-level functions the bound is known.
std::vector<HeadRow> HeadRows(const AnalysisResult& result);

// The lines with which a text output begins.
void WriteHead(const AnalysisResult& result, ResultOutput& output);

}  // namespace velkor::reports
