#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "reports/analysis_result.h"

namespace velkor::reports {

// What the picture of where the stack goes shows, without anything that draws: a column for each
// number, in it the calls that take the most bytes, one below the other. All of them, however small
// and however many; what of them is drawn, and how, is IcicleLayout's to say.

enum class IcicleKind {
  kFunction,
  kUndefined,  // not defined in the program
  kRecursion,  // all functions of one group, with their activations
  kFigure,     // what lies on a stack beside functions
  kSmall,      // several of these that are too small for a box each
  kMissing,    // what is not known, and as high as its words
};

// Its top is the bottom of the part before it.
struct IciclePart {
  uint64_t bottom = 0;    // bytes from the top of the column
  uint32_t function = 0;  // of a group the heaviest; none of a figure
  // Of a recursion or a figure, its position among those of the column.
  uint32_t number = 0;
  IcicleKind kind{};
};

struct IcicleRecursion {
  uint32_t group = 0;                // of the result
  std::vector<ExplanationRow> rows;  // the first ones, without their calls
};

struct IcicleColumn {
  uint32_t function = 0;  // the first one of that number
  size_t sharing = 1;     // functions that share it
  std::string stack;      // the name of the one that is shown; empty: none
  std::optional<uint64_t> stackSize;
  bool bounded = true;
  uint64_t known = 0;  // of all parts
  std::vector<IciclePart> parts;
  std::vector<IcicleRecursion> recursions;
  std::vector<std::string> figures;

  uint64_t TopOf(size_t part) const { return part == 0 ? 0 : parts[part - 1].bottom; }
  uint64_t BytesOf(size_t part) const { return parts[part].bottom - TopOf(part); }
};

struct Icicle {
  std::vector<IcicleColumn> columns;
  uint64_t most = 1;  // bytes of the largest column, or of the largest stack
  bool anyMissing = false;
};

// What a stack needs beside the path of its entry.
struct IcicleFigure {
  static constexpr uint32_t kNoFunction = std::numeric_limits<uint32_t>::max();

  std::string what;
  uint64_t bytes = 0;
  uint32_t function = kNoFunction;  // that takes them
};

// Which numbers are shown: functions that share one, first the one that is drawn.
struct IcicleEntry {
  std::span<const uint32_t> functions;
  std::optional<uint64_t> stackSize = {};  // bytes of the stack that it runs on
  std::string stack = {};
  std::vector<IcicleFigure> figures = {};
};

Icicle TakeIcicle(const AnalysisResult& result, std::span<const IcicleEntry> entries);

}  // namespace velkor::reports
