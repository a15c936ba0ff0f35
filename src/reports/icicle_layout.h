#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/reason.h"
#include "reports/icicle.h"

namespace velkor::reports {

// The lengths of a picture, from its upper left corner.
struct IcicleMeasures {
  double axisWidth = 64;
  double columnWidth = 136;
  double headHeight = 40;
  double boxesHeight = 460;  // of the most bytes
  double missingHeight = 48;
  double footHeight = 8;
  double smallest = 3;  // of a box that stands alone
};

// The words of a picture: patterns with "{}" for what they tell of.
struct IcicleWords {
  std::string title = "Bytes of the largest functions";
  std::string sharing = ", {} functions";
  std::string stack = "stack {}";
  std::string bytes = "{}: {} bytes";
  std::string recursion = "recursion of {} functions, {}: {} bytes";
  std::string noLimit = "without a limit";
  std::string smallLine = "{} {} functions";
  std::string small = "{} functions: {} bytes";
  std::string notKnown = "not known";
  std::array<std::string, kReasonKinds.size()> reasons;      // whole; empty: the usual ones
  std::array<std::string, kReasonKinds.size()> reasonNames;  // in one word; likewise
};

// What is drawn of one column as one box: a part, several small ones, or what is missing.
struct IcicleBox {
  IcicleKind kind{};
  double top = 0;
  double height = 0;
  uint64_t bytes = 0;  // none of kMissing
  size_t part = 0;     // the first one; of kMissing the number of parts
  size_t count = 1;
};

struct IcicleTick {
  double top = 0;
  uint64_t bytes = 0;
};

// Where everything of a picture stands, whatever draws it. Boxes are found when asked for: those
// that a screen shows cost no more than a look at each part of the column.
class IcicleLayout {
 public:
  // Refers to both.
  IcicleLayout(const AnalysisResult& result, const Icicle& icicle, IcicleMeasures measures = {},
               IcicleWords words = {});

  const Icicle& Shown() const { return icicle_; }
  const IcicleMeasures& Measures() const { return measures_; }
  const IcicleWords& Words() const { return words_; }
  double Width() const;
  double Height() const;
  double LeftOf(size_t column) const;
  double TopOf(uint64_t bytes) const;
  std::vector<IcicleTick> Ticks() const;
  std::optional<double> StackLine(size_t column) const;

  // Of the column, from the top down: all, or those that reach into a part of its height.
  std::vector<IcicleBox> Boxes(size_t column) const;
  std::vector<IcicleBox> BoxesBetween(size_t column, double top, double bottom) const;

  // Of a column: one line, whole and without a file; and "≥156" with how many share the number.
  std::string Name(size_t column) const;
  std::string ShortName(size_t column) const;
  std::string Known(size_t column) const;
  // Of a box: what stands in it, as far as it fits, and all that there is to say of it.
  std::vector<std::string> Lines(size_t column, const IcicleBox& box) const;
  std::string Text(size_t column, const IcicleBox& box) const;

 private:
  double Height(uint64_t bytes) const;
  IcicleBox PartBox(const IcicleColumn& column, size_t part) const;
  IcicleBox SmallBox(const IcicleColumn& column, size_t first, size_t end) const;
  IcicleBox MissingBox(const IcicleColumn& column) const;
  std::string PartText(const IcicleColumn& column, size_t part) const;
  std::string RecursionText(const IcicleColumn& column, size_t part) const;
  std::string Times(uint32_t group, std::string_view without) const;
  std::string_view ReasonWord(ReasonKind kind) const;
  std::string_view WholeReason(ReasonKind kind) const;
  std::vector<std::string> MissingLines(const IcicleColumn& column) const;
  std::string MissingText(const IcicleColumn& column) const;

  const AnalysisResult& result_;
  const Icicle& icicle_;
  const IcicleMeasures measures_;
  const IcicleWords words_;
  const double byteHeight_;
};

}  // namespace velkor::reports
