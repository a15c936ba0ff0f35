#pragma once

#include <cstdint>
#include <string>

#include "reports/analysis_result.h"
#include "reports/result_output.h"
#include "reports/uncertainty.h"

namespace velkor::reports {

// "≥156", and "at least 156 bytes".
std::string KnownText(const AnalysedFunction& function);
std::string BytesText(const AnalysedFunction& function);

// The parts of a page that take the number of a function apart: rows that add up to it, and what is
// not known.
class PageExplanations {
 public:
  PageExplanations(const AnalysisResult& result, ResultOutput& output)
      : result_(result), output_(output), search_(result) {}

  // As an element that can be opened, with the id.
  void Write(uint32_t function, const std::string& id, bool open);

 private:
  void WriteRows(uint32_t function);
  void WriteRow(const ExplanationRow& row);
  void WriteMissing(uint32_t function);

  const AnalysisResult& result_;
  ResultOutput& output_;
  UncertaintySearch search_;
};

}  // namespace velkor::reports
