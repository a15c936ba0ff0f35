#include "reports/icicle.h"

#include <algorithm>
#include <utility>

#include "core/bound_arithmetic.h"

namespace velkor::reports {
namespace {

constexpr size_t kMostRecursionRows = 12;

class ColumnTaking {
 public:
  explicit ColumnTaking(const AnalysisResult& result) : result_(result) {}

  IcicleColumn Run(const IcicleEntry& entry) {
    const uint32_t function = entry.functions.front();
    column_.function = function;
    column_.sharing = entry.functions.size();
    column_.stack = entry.stack;
    column_.stackSize = entry.stackSize;
    column_.bounded = result_.functions[function].state != BoundState::kUnbounded;
    const std::vector<ExplanationRow> rows = result_.explanations.Of(function, 0);
    column_.parts.reserve(rows.size() + entry.figures.size());
    for (size_t row = 0; row < rows.size();) {
      row += AddRows(std::span(rows).subspan(row));
    }
    for (const IcicleFigure& figure : entry.figures) {
      AddFigure(figure);
    }
    column_.known = bytes_;
    return std::move(column_);
  }

 private:
  // The first row, with the others of its group; how many.
  size_t AddRows(std::span<const ExplanationRow> rows) {
    const ExplanationRow& first = rows.front();
    if (first.group == StkBounds::kNoGroup) {
      const bool defined = result_.functions[first.function].Is(FN_DEFINED);
      Add({.function = first.function,
           .kind = defined ? IcicleKind::kFunction : IcicleKind::kUndefined},
          first.bytes);
      return 1;
    }
    const auto end = std::ranges::find_if(
        rows, [&first](const ExplanationRow& row) { return row.group != first.group; });
    const auto count = static_cast<size_t>(end - rows.begin());
    AddGroup(rows.first(count));
    return count;
  }

  void AddGroup(std::span<const ExplanationRow> rows) {
    uint64_t bytes = 0;
    for (const ExplanationRow& row : rows) {
      bytes = AddBounded(bytes, row.bytes);
    }
    const auto number = static_cast<uint32_t>(column_.recursions.size());
    const auto named = rows.first(std::min(rows.size(), kMostRecursionRows));
    column_.recursions.push_back({rows.front().group, {named.begin(), named.end()}});
    Add({.function = std::ranges::max_element(rows, {}, &ExplanationRow::bytes)->function,
         .number = number,
         .kind = IcicleKind::kRecursion},
        bytes);
  }

  void AddFigure(const IcicleFigure& figure) {
    const auto number = static_cast<uint32_t>(column_.figures.size());
    column_.figures.push_back(figure.what);
    Add({.function = figure.function, .number = number, .kind = IcicleKind::kFigure}, figure.bytes);
  }

  void Add(IciclePart part, uint64_t bytes) {
    bytes_ = AddBounded(bytes_, bytes);
    part.bottom = bytes_;
    column_.parts.push_back(part);
  }

  const AnalysisResult& result_;
  IcicleColumn column_;
  uint64_t bytes_ = 0;
};

}  // namespace

Icicle TakeIcicle(const AnalysisResult& result, std::span<const IcicleEntry> entries) {
  Icicle icicle;
  for (const IcicleEntry& entry : entries) {
    const IcicleColumn& column = icicle.columns.emplace_back(ColumnTaking(result).Run(entry));
    icicle.most = std::max({icicle.most, column.known, column.stackSize.value_or(0)});
    icicle.anyMissing = icicle.anyMissing || !column.bounded;
  }
  return icicle;
}

}  // namespace velkor::reports
