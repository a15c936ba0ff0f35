#include "reports/icicle.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <utility>

#include "core/bound_arithmetic.h"
#include "reports/reason_words.h"

namespace velkor::reports {
namespace {

constexpr double kAxisWidth = 64;
constexpr double kColumnWidth = 136;
constexpr double kHeadHeight = 40;
constexpr double kBoxesHeight = 460;
constexpr double kMissingHeight = 48;
constexpr double kFootHeight = 8;
constexpr double kSmallest = 3;  // of a box that stands alone

// Without the file of a static function: the picture has no room for it, its text tells it.
std::string ShortName(const AnalysisResult& result, uint32_t function) {
  const std::string name = result.ShownSpecName(function);
  const AnalysedFunction& analysed = result.functions[function];
  const size_t file = name.find('#');
  return analysed.Is(FN_DEFINED) && !analysed.Is(FN_GLOBAL) && file != std::string::npos
             ? name.substr(file + 1)
             : name;
}

class ColumnLayout {
 public:
  ColumnLayout(const AnalysisResult& result, double bytesHeight)
      : result_(result), bytesHeight_(bytesHeight) {}

  IcicleColumn Run(const IcicleEntry& entry) {
    const uint32_t function = entry.functions.front();
    const AnalysedFunction& analysed = result_.functions[function];
    column_.function = function;
    column_.name = result_.ShownSpecName(function);
    column_.shortName = ShortName(result_, function);
    const bool unbounded = analysed.state == BoundState::kUnbounded;
    column_.known = (unbounded ? "≥" : "") + std::to_string(analysed.known);
    if (entry.functions.size() > 1) {
      column_.known += fmt::format(", {} functions", entry.functions.size());
    }
    const std::vector<ExplanationRow> rows = result_.explanations.Of(function);
    for (size_t row = 0; row < rows.size();) {
      row += AddRows(std::span(rows).subspan(row));
    }
    CloseSmall();
    if (unbounded) {
      AddMissing(function);
    }
    if (entry.stackSize) {
      column_.stackLine = TopOf(*entry.stackSize);
    }
    return std::move(column_);
  }

 private:
  double TopOf(uint64_t bytes) const { return kHeadHeight + Height(bytes); }
  double Height(uint64_t bytes) const { return static_cast<double>(bytes) * bytesHeight_; }

  // The first row, with the others of its group; how many.
  size_t AddRows(std::span<const ExplanationRow> rows) {
    const ExplanationRow& first = rows.front();
    if (first.group == StkBounds::kNoGroup) {
      const bool defined = result_.functions[first.function].Is(FN_DEFINED);
      const std::string name = result_.ShownSpecName(first.function);
      IcicleBox box;
      box.kind = defined ? IcicleKind::kFunction : IcicleKind::kUndefined;
      box.bytes = first.bytes;
      box.lines = {fmt::format("{} {}", box.bytes, ShortName(result_, first.function))};
      box.text = fmt::format("{}: {} bytes", name, first.bytes);
      AddBox(std::move(box));
      return 1;
    }
    const auto end = std::ranges::find_if(
        rows, [&first](const ExplanationRow& row) { return row.group != first.group; });
    AddGroup(rows.first(static_cast<size_t>(end - rows.begin())));
    return static_cast<size_t>(end - rows.begin());
  }

  void AddGroup(std::span<const ExplanationRow> rows) {
    constexpr size_t kMostNamed = 12;
    const RecursionGroup& group = result_.groups[rows.front().group];
    IcicleBox box;
    box.kind = IcicleKind::kRecursion;
    for (const ExplanationRow& row : rows) {
      box.bytes = AddBounded(box.bytes, row.bytes);
    }
    const std::string times =
        group.settled ? fmt::format("×{}", group.activations) : "without a limit";
    const uint32_t heaviest = std::ranges::max_element(rows, {}, &ExplanationRow::bytes)->function;
    box.lines = {fmt::format("{} {} {}", box.bytes, group.settled ? times : "×?",
                             ShortName(result_, heaviest))};
    box.text = fmt::format("recursion of {} functions, {}: {} bytes", group.members.size(), times,
                           box.bytes);
    for (size_t i = 0; i < rows.size() && i < kMostNamed; ++i) {
      box.text += fmt::format("\n{}: {} × {}", result_.ShownSpecName(rows[i].function),
                              rows[i].times, rows[i].bytes / rows[i].times);
    }
    AddBox(std::move(box));
  }

  void AddBox(IcicleBox box) {
    box.top = TopOf(bytes_);
    box.height = Height(box.bytes);
    if (box.height < kSmallest) {
      AddSmall(box);
    } else {
      CloseSmall();
      column_.boxes.push_back(box);
    }
    bytes_ = AddBounded(bytes_, box.bytes);
  }

  void AddSmall(const IcicleBox& box) {
    constexpr size_t kMostNamed = 12;
    if (smallCount_ == 0) {
      small_ = box;
    } else {
      small_.bytes = AddBounded(small_.bytes, box.bytes);
      small_.height += box.height;
      small_.text += smallCount_ < kMostNamed ? "\n" + box.text : "";
    }
    ++smallCount_;
  }

  void CloseSmall() {
    if (smallCount_ == 0 || small_.bytes == 0) {
      smallCount_ = 0;
      return;
    }
    if (smallCount_ > 1) {
      small_.kind = IcicleKind::kSmall;
      small_.lines = {fmt::format("{} {} functions", small_.bytes, smallCount_)};
      small_.text =
          fmt::format("{} functions: {} bytes\n{}", smallCount_, small_.bytes, small_.text);
    }
    column_.boxes.push_back(std::exchange(small_, {}));
    smallCount_ = 0;
  }

  // Two short words stand in one line.
  static void AddWord(const std::string& word, std::vector<std::string>& lines) {
    constexpr size_t kMostInLine = 20;
    if (lines.empty()) {
      lines.push_back("+ ? " + word);
    } else if (lines.back().size() + 2 + word.size() <= kMostInLine) {
      lines.back() += ", " + word;
    } else {
      lines.back() += ",";
      lines.push_back(word);
    }
  }

  void AddMissing(uint32_t function) {
    IcicleBox box;
    box.kind = IcicleKind::kMissing;
    box.top = TopOf(bytes_);
    box.height = kMissingHeight;
    for (const ReasonWitness& reason : result_.Reasons(function)) {
      AddWord(std::string(ReasonName(reason.kind)), box.lines);
      box.text += fmt::format("{}{}: {}", box.text.empty() ? "not known: " : "\n",
                              ReasonWords(reason.kind), result_.ShownSpecName(reason.function));
    }
    column_.boxes.push_back(std::move(box));
  }

  const AnalysisResult& result_;
  const double bytesHeight_;
  IcicleColumn column_;
  uint64_t bytes_ = 0;  // of the boxes so far
  IcicleBox small_;
  size_t smallCount_ = 0;
};

// 1, 2 or 5 times a power of ten, so that there are about so many of them.
uint64_t TickStep(uint64_t most) {
  constexpr uint64_t kWanted = 6;
  for (uint64_t power = 1;; power *= 10) {
    for (const uint64_t factor : std::array<uint64_t, 3>{1, 2, 5}) {
      if (most / (power * factor) <= kWanted) {
        return power * factor;
      }
    }
  }
}

std::vector<IcicleTick> Ticks(uint64_t most, double bytesHeight) {
  std::vector<IcicleTick> ticks;
  const uint64_t step = TickStep(most);
  for (uint64_t bytes = 0; bytes <= most; bytes += step) {
    ticks.push_back({kHeadHeight + static_cast<double>(bytes) * bytesHeight, bytes});
  }
  return ticks;
}

}  // namespace

Icicle LayOutIcicle(const AnalysisResult& result, std::span<const IcicleEntry> entries) {
  uint64_t most = 1;
  bool anyMissing = false;
  for (const IcicleEntry& entry : entries) {
    const AnalysedFunction& function = result.functions[entry.functions.front()];
    most = std::max({most, function.known, entry.stackSize.value_or(0)});
    anyMissing = anyMissing || function.state == BoundState::kUnbounded;
  }
  const double bytesHeight = kBoxesHeight / static_cast<double>(most);
  Icicle icicle;
  icicle.width = kAxisWidth + kColumnWidth * static_cast<double>(entries.size());
  icicle.height = kHeadHeight + kBoxesHeight + (anyMissing ? kMissingHeight : 0) + kFootHeight;
  icicle.columnsLeft = kAxisWidth;
  icicle.columnWidth = kColumnWidth;
  icicle.boxesTop = kHeadHeight;
  icicle.ticks = Ticks(most, bytesHeight);
  for (const IcicleEntry& entry : entries) {
    icicle.columns.push_back(ColumnLayout(result, bytesHeight).Run(entry));
  }
  return icicle;
}

}  // namespace velkor::reports
