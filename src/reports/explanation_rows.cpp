#include "reports/explanation_rows.h"

#include <algorithm>
#include <fmt/format.h>
#include <functional>
#include <numeric>
#include <span>

#include "core/bound_arithmetic.h"
#include "reports/function_names.h"
#include "reports/reason_words.h"
#include "reports/table_line.h"

namespace velkor::reports {
namespace {

constexpr std::ptrdiff_t kShownAtStart = 30;
constexpr std::ptrdiff_t kShownAtEnd = 10;
constexpr size_t kMostLargest = 8;
constexpr size_t kMostLargestNamed = 3;
constexpr size_t kMostSteps = 5'000'000;  // functions of all rows and their calls together

}  // namespace

ExplanationRows::ExplanationRows(const AnalysisResult& result, Shown shown, ResultOutput& output)
    : result_(result), shown_(shown), output_(output), search_(result), stepsLeft_(kMostSteps) {}

void ExplanationRows::WriteHeading(std::string_view bytes) {
  output_.Write(
      TableLine({.bytes = std::string(bytes), .total = "Total", .frame = "Frame"}, 0, "Function"));
}

void ExplanationRows::WriteFunction(uint32_t function) {
  const bool drawn = shown_ == Shown::kAll || stepsLeft_ > 0;
  const AnalysedFunction& shown = At(function);
  const bool unbounded = shown.state == BoundState::kUnbounded;
  output_.Write(
      TableLine({.bytes = (unbounded ? result_.atLeast : "") + std::to_string(shown.known),
                 .total = result_.TotalText(function),
                 .frame = result_.FrameText(function)},
                0, Name(function) + (drawn ? "" : "  (chain not drawn: --full draws it)")));
  if (drawn) {
    WriteRows(function);
  }
  WriteReasons(function);
}

void ExplanationRows::WriteParts(uint32_t function) {
  output_.Write(TableLine({.bytes = "Bytes", .total = "", .frame = "Frame"}, 0, "Function"));
  WriteRows(function);
  WriteReasons(function);
}

void ExplanationRows::WriteRows(uint32_t function) {
  const size_t mostCalls = shown_ == Shown::kAll ? Explanations::kMostCalls : stepsLeft_;
  const std::vector<ExplanationRow> rows = result_.explanations.Of(function, mostCalls);
  size_t steps = rows.size();
  for (const ExplanationRow& row : rows) {
    steps += row.calls.size();
  }
  stepsLeft_ -= std::min(stepsLeft_, steps);
  ForShown(
      rows, [this](const ExplanationRow& row) { WriteRow(row); },
      [this](size_t count, uint64_t bytes) {
        output_.Write(TableLine({.bytes = std::to_string(bytes), .total = "", .frame = ""}, 1,
                                LeftOut(count)));
      });
}

void ExplanationRows::WriteRow(const ExplanationRow& row) {
  std::string text = NameAndAdjustment(row.function);
  if (row.times > 1) {
    text += fmt::format("  ({} times {})", row.times, row.bytes / row.times);
  }
  if (row.callsLeftOut) {
    text += "  (path not drawn)";
  }
  output_.Write(TableLine(
      {.bytes = std::to_string(row.bytes), .total = "", .frame = result_.FrameText(row.function)},
      1, text));
  if (!row.calls.empty()) {
    WriteCalls(row);
  }
}

// What one round of a counted function takes: itself, then the path below it.
void ExplanationRows::WriteCalls(const ExplanationRow& row) {
  const auto write = [this](uint64_t bytes, std::string_view text) {
    output_.Write(TableLine({.bytes = "", .total = "", .frame = ""}, 1,
                            PaddedColumn(std::to_string(bytes)) + "  " + std::string(text)));
  };
  write(result_.explanations.ActivationSizeOf(row.function), NameAndAdjustment(row.function));
  ForShown(
      row.calls,
      [&](const ExplainedCall& call) { write(call.bytes, NameAndAdjustment(call.function)); },
      [&](size_t count, uint64_t bytes) { write(bytes, LeftOut(count)); });
}

void ExplanationRows::WriteReasons(uint32_t function) {
  const BoundState state = At(function).state;
  if (state == BoundState::kOver) {
    output_.Write(TableLine({}, 0, fmt::format("over the limit of {} bytes", result_.sizeLimit)));
  }
  if (state != BoundState::kUnbounded) {
    return;
  }
  const Uncertainty found = search_.Below(function);
  for (const ReasonKind kind : kReasonKinds) {
    WriteReason(ReasonWords(kind), found.Of(kind), found.cutShort);
  }
  if (found.cutShort) {
    output_.Write(TableLine({}, 0, "not everything below it was looked at"));
  }
}

void ExplanationRows::WriteReason(std::string_view reason, const NamedFunctions& functions,
                                  bool cutShort) {
  const size_t named = shown_ == Shown::kLargest ? kMostLargestNamed : functions.named.size();
  if (functions.count > 0) {
    output_.Write(TableLine(
        {}, 0,
        fmt::format(
            "{}: {}{}", reason,
            NameList(result_,
                     std::span(functions.named).first(std::min(named, functions.named.size())),
                     functions.count),
            cutShort ? ", and perhaps more" : "")));
  }
}

std::string ExplanationRows::Name(uint32_t function) const {
  return result_.ShownDisplayName(function);
}

std::string ExplanationRows::NameAndAdjustment(uint32_t function) const {
  const std::string adjustment = result_.AdjustmentText(function, AdjustmentStyle::kReport);
  return Name(function) + (adjustment.empty() ? "" : "  " + adjustment);
}

template <typename Item, typename Write, typename WriteLeftOut>
void ExplanationRows::ForShown(const std::vector<Item>& items, Write write,
                               WriteLeftOut writeLeftOut) const {
  if (shown_ == Shown::kLargest && items.size() > kMostLargest + 1) {  // one more is not worth it
    ForLargest(items, write, writeLeftOut);
    return;
  }
  const bool cut = shown_ == Shown::kEnds && std::ssize(items) > kShownAtStart + kShownAtEnd;
  const auto leftOut = cut ? items.begin() + kShownAtStart : items.end();
  const auto rest = cut ? items.end() - kShownAtEnd : items.end();
  std::for_each(items.begin(), leftOut, write);
  if (cut) {
    uint64_t bytes = 0;
    for (auto item = leftOut; item != rest; ++item) {
      bytes = AddBounded(bytes, item->bytes);
    }
    writeLeftOut(static_cast<size_t>(rest - leftOut), bytes);
  }
  std::for_each(rest, items.end(), write);
}

template <typename Item, typename Write, typename WriteLeftOut>
void ExplanationRows::ForLargest(const std::vector<Item>& items, Write write,
                                 WriteLeftOut writeLeftOut) const {
  std::vector<size_t> order(items.size());
  std::iota(order.begin(), order.end(), size_t{0});
  std::ranges::stable_sort(order, std::greater(), [&](size_t i) { return items[i].bytes; });
  std::sort(order.begin(), order.begin() + kMostLargest);
  uint64_t bytes = 0;
  for (size_t i = 0; i < order.size(); ++i) {
    if (i < kMostLargest) {
      write(items[order[i]]);
    } else {
      bytes = AddBounded(bytes, items[order[i]].bytes);
    }
  }
  writeLeftOut(items.size() - kMostLargest, bytes);
}

std::string ExplanationRows::LeftOut(size_t count) const {
  return shown_ == Shown::kLargest
             ? fmt::format("... {} more functions", count)
             : fmt::format("... {} functions left out, --full shows them", count);
}

}  // namespace velkor::reports
