#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "reports/analysis_result.h"

namespace velkor::reports {

// The picture of where the stack goes, without anything that draws: a column for each number, in it
// the calls that take the most bytes, one below the other, each as high as its bytes. Lengths are
// those of the picture, from its upper left corner.

enum class IcicleKind {
  kFunction,
  kUndefined,  // not defined in the program
  kRecursion,  // all functions of one group, with their activations
  kSmall,      // several functions that are too small for a box each
  kMissing,    // what is not known, and as high as its words
};

struct IcicleBox {
  IcicleKind kind{};
  double top = 0;
  double height = 0;
  uint64_t bytes = 0;              // none of kMissing
  std::vector<std::string> lines;  // what stands in it, as far as it fits
  std::string text;                // all that there is to say of it
};

struct IcicleColumn {
  uint32_t function = 0;  // the first one of that number
  std::string name;       // one line; what fits is the drawer's to find out
  std::string shortName;  // without a file
  std::string known;      // "≥156", and how many functions share the number
  std::vector<IcicleBox> boxes;
  std::optional<double> stackLine;  // where the stack ends, whose size is known
};

struct IcicleTick {
  double top = 0;
  uint64_t bytes = 0;
};

struct Icicle {
  double width = 0;
  double height = 0;
  double columnsLeft = 0;  // the columns stand beside each other from here on
  double columnWidth = 0;
  double boxesTop = 0;  // where 0 bytes are
  std::vector<IcicleTick> ticks;
  std::vector<IcicleColumn> columns;
};

// Which numbers are drawn: functions that share one, first the one that is drawn.
struct IcicleEntry {
  std::span<const uint32_t> functions;
  std::optional<uint64_t> stackSize;  // bytes of the stack that it runs on
};

Icicle LayOutIcicle(const AnalysisResult& result, std::span<const IcicleEntry> entries);

}  // namespace velkor::reports
