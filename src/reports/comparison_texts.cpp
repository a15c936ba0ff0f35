#include "reports/comparison_texts.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

namespace velkor::reports {
namespace {

struct ChangeWords {
  EntryChange change;
  std::string_view name;
  std::string_view one;  // behind a count of 1
  std::string_view more;
};

constexpr std::array<ChangeWords, 8> kWords = {{
    {EntryChange::kLostBound, "lost-bound", "lost its bound", "lost their bounds"},
    {EntryChange::kOver, "over", "over the limit", "over the limit"},
    {EntryChange::kGrew, "grew", "grew", "grew"},
    {EntryChange::kAdded, "new", "new", "new"},
    {EntryChange::kShrank, "shrank", "shrank", "shrank"},
    {EntryChange::kGainedBound, "gained-bound", "has a bound now", "have bounds now"},
    {EntryChange::kRemoved, "gone", "gone", "gone"},
    {EntryChange::kUnchanged, "unchanged", "unchanged", "unchanged"},
}};

const ChangeWords& WordsOf(EntryChange change) {
  return *std::ranges::find(kWords, change, &ChangeWords::change);
}

std::string_view ReasonText(ReasonKind kind) {
  switch (kind) {
    case ReasonKind::kUnknown:
      return "is unknown";
    case ReasonKind::kIndirect:
      return "calls through a pointer";
    case ReasonKind::kHiddenCall:
      return "makes a call that its record does not list";
    case ReasonKind::kDynamic:
      return "has a frame without a limit";
    case ReasonKind::kRecursion:
      return "is part of a recursion without a limit";
  }
  return {};
}

std::string Rounds(uint64_t depth) {
  return depth == kNoDepth ? "none" : std::to_string(depth);
}

}  // namespace

std::string_view ChangeName(EntryChange change) {
  return WordsOf(change).name;
}

std::string ComparisonTexts::Heading() const {
  std::string text;
  for (const ChangeWords& words : kWords) {
    const size_t count = comparison_.Count(words.change);
    if (count != 0 && words.change != EntryChange::kUnchanged) {
      text += fmt::format("{}{} {}", text.empty() ? "" : ", ", count,
                          count == 1 ? words.one : words.more);
    }
  }
  return fmt::format("Stack: {} ({} → {})", text.empty() ? "nothing changed" : text,
                     showName_(before_.label), showName_(after_.label));
}

std::string_view ComparisonTexts::Change(const ComparedEntry& entry) const {
  return WordsOf(entry.change).one;
}

std::string ComparisonTexts::Name(const ComparedEntry& entry) const {
  return showName_(entry.after ? after_.names[*entry.after] : before_.names[*entry.before]);
}

std::string ComparisonTexts::Before(const ComparedEntry& entry) const {
  return entry.before ? Known(before_, *entry.before) : "";
}

std::string ComparisonTexts::After(const ComparedEntry& entry) const {
  return entry.after ? Known(after_, *entry.after) : "";
}

std::string ComparisonTexts::Known(const ComparedAnalysis& analysis, uint32_t function) const {
  const ComparedFunction& compared = analysis.functions[function];
  return (compared.state == BoundState::kUnbounded ? "≥" : "") + std::to_string(compared.known);
}

std::string ComparisonTexts::Difference(const ComparedEntry& entry) {
  if (!entry.before || !entry.after || entry.knownBefore == entry.knownAfter) {
    return "";
  }
  return entry.knownAfter > entry.knownBefore
             ? "+" + std::to_string(entry.knownAfter - entry.knownBefore)
             : "-" + std::to_string(entry.knownBefore - entry.knownAfter);
}

std::string ComparisonTexts::Cause(const ChangeCause& cause) const {
  return Entries(cause) + ": " + What(cause) + Path(cause);
}

std::string ComparisonTexts::Entries(const ChangeCause& cause) const {
  constexpr size_t kMostNamed = 3;
  std::string text;
  for (size_t i = 0; i < std::min(kMostNamed, cause.entries.size()); ++i) {
    text += (i == 0 ? "" : ", ") + Name(comparison_.entries[cause.entries[i]]);
  }
  if (cause.entries.size() > kMostNamed) {
    text += fmt::format(" and {} more", cause.entries.size() - kMostNamed);
  }
  const ComparedEntry& first = comparison_.entries[cause.entries.front()];
  const std::string difference = Difference(first);
  if (cause.kind == ChangeCause::Kind::kReason || difference.empty()) {
    return text;
  }
  return text + (cause.entries.size() > 1 ? " up to " : " ") + difference;
}

std::string ComparisonTexts::What(const ChangeCause& cause) const {
  const std::string function = FunctionAndPlace(AnalysisOf(cause), cause.function);
  const uint64_t earlier = cause.inOld ? cause.sizeAfter : cause.sizeBefore;
  const uint64_t later = cause.inOld ? cause.sizeBefore : cause.sizeAfter;
  switch (cause.kind) {
    case ChangeCause::Kind::kReason:
      return fmt::format("{} {}", function, ReasonText(cause.reason));
    case ChangeCause::Kind::kSize:
      return fmt::format("{} {} → {}", function, earlier, later);
    case ChangeCause::Kind::kCall:
      return Called(cause);
    case ChangeCause::Kind::kRounds:
      return fmt::format("rounds of {} {} → {}", function, Rounds(earlier), Rounds(later));
    case ChangeCause::Kind::kPath:
      break;
  }
  return "the path with the most bytes is another one";
}

std::string ComparisonTexts::Called(const ChangeCause& cause) const {
  const ComparedAnalysis& analysis = AnalysisOf(cause);
  const std::string caller =
      cause.path.size() < 2 ? "" : showName_(analysis.names[cause.path[cause.path.size() - 2]]);
  return fmt::format("{} ({} bytes) is {} called by {}", FunctionAndPlace(analysis, cause.function),
                     cause.sizeAfter, cause.inOld ? "no longer" : "now", caller);
}

std::string ComparisonTexts::Path(const ChangeCause& cause) const {
  constexpr size_t kAtStart = 4;
  constexpr size_t kAtEnd = 3;
  if (cause.path.size() < 2) {
    return "";
  }
  std::string text;
  for (size_t i = 0; i < cause.path.size(); ++i) {
    if (i == kAtStart && cause.path.size() > kAtStart + kAtEnd) {
      text += " → ...";
      i = cause.path.size() - kAtEnd;
    }
    text += (i == 0 ? ", by " : " → ") + showName_(AnalysisOf(cause).names[cause.path[i]]);
  }
  return text;
}

std::string ComparisonTexts::FunctionAndPlace(const ComparedAnalysis& analysis,
                                              uint32_t function) const {
  const ComparedFunction& compared = analysis.functions[function];
  std::string name = showName_(analysis.names[function]);
  if (compared.file == kNoFile || compared.line == 0) {
    return name;
  }
  return fmt::format("{} ({}:{})", name, showName_(analysis.files[compared.file]), compared.line);
}

}  // namespace velkor::reports
