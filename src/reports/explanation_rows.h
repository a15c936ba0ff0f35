#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/explanation.h"
#include "reports/analysis_result.h"
#include "reports/result_output.h"
#include "reports/uncertainty.h"

namespace velkor::reports {

// The part of a text output that takes the bounds of functions apart, one after another: lines
// whose first column adds up to what is known of a function, and what keeps it from a bound.
//
// In the columns of a line: bytes, total, frame, name. What is left out of a long list stands in
// one line, with the bytes of all of it.
class ExplanationRows {
 public:
  // Of a long list; but for kAll all functions together have a budget, so that a program with very
  // many deep ones stays readable and quick.
  enum class Shown { kAll, kEnds, kLargest };

  ExplanationRows(const AnalysisResult& result, Shown shown, ResultOutput& output);

  void WriteHeading(std::string_view bytes);
  // The function's own line, with its bound or what is known at least, and all that is beneath it.
  void WriteFunction(uint32_t function);
  // What is beneath that line, with a heading of its own.
  void WriteParts(uint32_t function);

 private:
  void WriteRows(uint32_t function);
  void WriteRow(const ExplanationRow& row);
  void WriteCalls(const ExplanationRow& row);
  void WriteReasons(uint32_t function);
  void WriteReason(std::string_view reason, const NamedFunctions& functions, bool cutShort);
  std::string Name(uint32_t function) const;
  std::string NameAndAdjustment(uint32_t function) const;
  const AnalysedFunction& At(uint32_t function) const { return result_.functions[function]; }
  // Calls one of the two for each item, or for all that are left out in the middle of a long list.
  template <typename Item, typename Write, typename WriteLeftOut>
  void ForShown(const std::vector<Item>& items, Write write, WriteLeftOut writeLeftOut) const;
  template <typename Item, typename Write, typename WriteLeftOut>
  void ForLargest(const std::vector<Item>& items, Write write, WriteLeftOut writeLeftOut) const;
  std::string LeftOut(size_t count) const;

  const AnalysisResult& result_;
  const Shown shown_;
  ResultOutput& output_;
  UncertaintySearch search_;
  size_t stepsLeft_;
};

}  // namespace velkor::reports
