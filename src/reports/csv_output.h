#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "reports/analysis_result.h"
#include "reports/result_output.h"

namespace velkor::reports {

// A heading, then one row a function in table order, in UTF-8; rows end with a line feed.
// threads: how many make them, 0 for as many as run at once; the same bytes for any number.
void WriteCsv(const AnalysisResult& result, ResultOutput& output, size_t threads = 1);

// The field as it stands in a row, of UTF-8: one line without control characters (OneLine); behind
// a "'" where a spreadsheet would take it for a formula; in quotes, its own quotes doubled, when it
// holds a comma or a quote.
std::string CsvField(std::string_view text);

}  // namespace velkor::reports
