#include "reports/icicle_layout.h"

#include <algorithm>
#include <fmt/format.h>
#include <utility>

#include "reports/reason_words.h"

namespace velkor::reports {
namespace {

constexpr size_t kMostNamed = 12;

template <typename... Values>
std::string Said(const std::string& pattern, const Values&... values) {
  return fmt::format(fmt::runtime(pattern), values...);
}

// Without the file of a static function: the picture has no room for it, its text tells it.
std::string NameWithoutFile(const AnalysisResult& result, uint32_t function) {
  const std::string name = result.ShownSpecName(function);
  const AnalysedFunction& analysed = result.functions[function];
  const size_t file = name.find('#');
  return analysed.Is(FN_DEFINED) && !analysed.Is(FN_GLOBAL) && file != std::string::npos
             ? name.substr(file + 1)
             : name;
}

// Two short words stand in one line.
void AddWord(std::string_view word, std::vector<std::string>& lines) {
  constexpr size_t kMostInLine = 20;
  if (lines.empty()) {
    lines.push_back(fmt::format("+ ? {}", word));
  } else if (lines.back().size() + 2 + word.size() <= kMostInLine) {
    lines.back() += fmt::format(", {}", word);
  } else {
    lines.back() += ",";
    lines.emplace_back(word);
  }
}

// 1, 2 or 5 times a power of ten, so that about so many of them fit.
uint64_t TickStep(double most, double wanted) {
  for (uint64_t power = 1;; power *= 10) {
    for (const uint64_t factor : std::array<uint64_t, 3>{1, 2, 5}) {
      if (most / static_cast<double>(power * factor) <= wanted) {
        return power * factor;
      }
    }
  }
}

}  // namespace

IcicleLayout::IcicleLayout(const AnalysisResult& result, const Icicle& icicle,
                           IcicleMeasures measures, IcicleWords words)
    : result_(result),
      icicle_(icicle),
      measures_(measures),
      words_(std::move(words)),
      byteHeight_(measures.boxesHeight / static_cast<double>(icicle.most)) {}

double IcicleLayout::Width() const {
  return LeftOf(icicle_.columns.size());
}

double IcicleLayout::Height() const {
  return measures_.headHeight + measures_.boxesHeight +
         (icicle_.anyMissing ? measures_.missingHeight : 0) + measures_.footHeight;
}

double IcicleLayout::LeftOf(size_t column) const {
  return measures_.axisWidth + measures_.columnWidth * static_cast<double>(column);
}

double IcicleLayout::Height(uint64_t bytes) const {
  return static_cast<double>(bytes) * byteHeight_;
}

double IcicleLayout::TopOf(uint64_t bytes) const {
  return measures_.headHeight + Height(bytes);
}

std::vector<IcicleTick> IcicleLayout::Ticks() const {
  constexpr double kTickDistance = 65;
  const double wanted = std::max(1.0, measures_.boxesHeight / kTickDistance);
  const uint64_t step = TickStep(static_cast<double>(icicle_.most), wanted);
  std::vector<IcicleTick> ticks;
  for (uint64_t bytes = 0; bytes <= icicle_.most; bytes += step) {
    ticks.push_back({TopOf(bytes), bytes});
  }
  return ticks;
}

std::optional<double> IcicleLayout::StackLine(size_t column) const {
  const std::optional<uint64_t>& size = icicle_.columns[column].stackSize;
  return size ? std::optional(TopOf(*size)) : std::nullopt;
}

std::vector<IcicleBox> IcicleLayout::Boxes(size_t column) const {
  return BoxesBetween(column, 0, Height());
}

// Small parts that follow each other are one box, from the first of them to the last, whatever the
// window that looks at them.
std::vector<IcicleBox> IcicleLayout::BoxesBetween(size_t number, double top, double bottom) const {
  const IcicleColumn& column = icicle_.columns[number];
  const std::vector<IciclePart>& parts = column.parts;
  const auto isSmall = [&](size_t part) {
    return Height(column.BytesOf(part)) < measures_.smallest;
  };
  const auto seen = std::ranges::partition_point(
      parts, [&](const IciclePart& part) { return TopOf(part.bottom) < top; });
  auto part = static_cast<size_t>(seen - parts.begin());
  while (part > 0 && part < parts.size() && isSmall(part) && isSmall(part - 1)) {
    --part;
  }
  std::vector<IcicleBox> boxes;
  while (part < parts.size() && TopOf(column.TopOf(part)) <= bottom) {
    size_t end = part + 1;
    while (isSmall(part) && end < parts.size() && isSmall(end)) {
      ++end;
    }
    const IcicleBox box = end == part + 1 ? PartBox(column, part) : SmallBox(column, part, end);
    if (box.bytes > 0) {
      boxes.push_back(box);
    }
    part = end;
  }
  if (!column.bounded && TopOf(column.known) <= bottom) {
    boxes.push_back(MissingBox(column));
  }
  return boxes;
}

IcicleBox IcicleLayout::PartBox(const IcicleColumn& column, size_t part) const {
  return {.kind = column.parts[part].kind,
          .top = TopOf(column.TopOf(part)),
          .height = Height(column.BytesOf(part)),
          .bytes = column.BytesOf(part),
          .part = part};
}

IcicleBox IcicleLayout::SmallBox(const IcicleColumn& column, size_t first, size_t end) const {
  const uint64_t bytes = column.parts[end - 1].bottom - column.TopOf(first);
  return {.kind = IcicleKind::kSmall,
          .top = TopOf(column.TopOf(first)),
          .height = Height(bytes),
          .bytes = bytes,
          .part = first,
          .count = end - first};
}

IcicleBox IcicleLayout::MissingBox(const IcicleColumn& column) const {
  return {.kind = IcicleKind::kMissing,
          .top = TopOf(column.known),
          .height = measures_.missingHeight,
          .bytes = 0,
          .part = column.parts.size()};
}

std::string IcicleLayout::Name(size_t column) const {
  const IcicleColumn& shown = icicle_.columns[column];
  const std::string name = result_.ShownSpecName(shown.function);
  return shown.stack.empty() ? name : Said(words_.stack, shown.stack) + ", " + name;
}

std::string IcicleLayout::ShortName(size_t column) const {
  const IcicleColumn& shown = icicle_.columns[column];
  return shown.stack.empty() ? NameWithoutFile(result_, shown.function)
                             : Said(words_.stack, shown.stack);
}

std::string IcicleLayout::Known(size_t column) const {
  const IcicleColumn& shown = icicle_.columns[column];
  std::string known = (shown.bounded ? "" : "≥") + std::to_string(shown.known);
  if (shown.stackSize) {
    known += " / " + std::to_string(*shown.stackSize);
  }
  return shown.sharing > 1 ? known + Said(words_.sharing, shown.sharing) : known;
}

std::vector<std::string> IcicleLayout::Lines(size_t number, const IcicleBox& box) const {
  const IcicleColumn& column = icicle_.columns[number];
  switch (box.kind) {
    case IcicleKind::kMissing:
      return MissingLines(column);
    case IcicleKind::kSmall:
      return {Said(words_.smallLine, box.bytes, box.count)};
    case IcicleKind::kFigure:
      return {fmt::format("{} {}", box.bytes, column.figures[column.parts[box.part].number])};
    case IcicleKind::kRecursion: {
      const IciclePart& part = column.parts[box.part];
      return {fmt::format("{} {} {}", box.bytes,
                          Times(column.recursions[part.number].group, "×?"),
                          NameWithoutFile(result_, part.function))};
    }
    default:
      return {fmt::format("{} {}", box.bytes,
                          NameWithoutFile(result_, column.parts[box.part].function))};
  }
}

std::string IcicleLayout::Text(size_t number, const IcicleBox& box) const {
  const IcicleColumn& column = icicle_.columns[number];
  if (box.kind == IcicleKind::kMissing) {
    return MissingText(column);
  }
  if (box.kind != IcicleKind::kSmall) {
    return PartText(column, box.part);
  }
  std::string text = Said(words_.small, box.count, box.bytes);
  for (size_t i = 0; i < std::min(box.count, kMostNamed); ++i) {
    text += "\n" + PartText(column, box.part + i);
  }
  return text;
}

std::string IcicleLayout::PartText(const IcicleColumn& column, size_t part) const {
  const IciclePart& shown = column.parts[part];
  const uint64_t bytes = column.BytesOf(part);
  switch (shown.kind) {
    case IcicleKind::kRecursion:
      return RecursionText(column, part);
    case IcicleKind::kFigure:
      return Said(words_.bytes, column.figures[shown.number], bytes);
    default:
      return Said(words_.bytes, result_.ShownSpecName(shown.function), bytes);
  }
}

std::string IcicleLayout::RecursionText(const IcicleColumn& column, size_t part) const {
  const IcicleRecursion& recursion = column.recursions[column.parts[part].number];
  std::string text = Said(words_.recursion, result_.groups[recursion.group].members.size(),
                          Times(recursion.group, words_.noLimit), column.BytesOf(part));
  for (const ExplanationRow& row : recursion.rows) {
    text += fmt::format("\n{}: {} × {}", result_.ShownSpecName(row.function), row.times,
                        row.bytes / row.times);
  }
  return text;
}

std::string IcicleLayout::Times(uint32_t group, std::string_view without) const {
  const RecursionGroup& recursion = result_.groups[group];
  return recursion.settled ? fmt::format("×{}", recursion.activations) : std::string(without);
}

std::string_view IcicleLayout::ReasonWord(ReasonKind kind) const {
  const std::string& word = words_.reasonNames[static_cast<size_t>(kind)];
  return word.empty() ? ReasonName(kind) : word;
}

std::string_view IcicleLayout::WholeReason(ReasonKind kind) const {
  const std::string& words = words_.reasons[static_cast<size_t>(kind)];
  return words.empty() ? ReasonWords(kind) : words;
}

std::vector<std::string> IcicleLayout::MissingLines(const IcicleColumn& column) const {
  std::vector<std::string> lines;
  for (const ReasonWitness& reason : result_.Reasons(column.function)) {
    AddWord(ReasonWord(reason.kind), lines);
  }
  return lines;
}

std::string IcicleLayout::MissingText(const IcicleColumn& column) const {
  std::string text;
  for (const ReasonWitness& reason : result_.Reasons(column.function)) {
    text += text.empty() ? words_.notKnown + ": " : "\n";
    text += fmt::format("{}: {}", WholeReason(reason.kind), result_.ShownSpecName(reason.function));
  }
  return text;
}

}  // namespace velkor::reports
