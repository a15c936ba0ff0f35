#include "reports/comparison_output.h"

#include <algorithm>
#include <fmt/format.h>
#include <span>

#include "reports/comparison_texts.h"
#include "reports/table_line.h"
#include "reports/terminal_text.h"

namespace velkor::reports {
namespace {

constexpr size_t kMostEntries = 60;
constexpr size_t kMostCauses = 30;

// Calls write for each of as many items as are shown; how many are left.
template <typename Items, typename Write>
size_t ForFirst(const Items& items, size_t most, Write write) {
  const size_t shown = std::min(most, items.size());
  std::for_each(items.begin(), items.begin() + static_cast<std::ptrdiff_t>(shown), write);
  return items.size() - shown;
}

std::span<const ComparedEntry> Changed(const Comparison& comparison) {
  return std::span(comparison.entries)
      .first(comparison.entries.size() - comparison.Count(EntryChange::kUnchanged));
}

// A table takes "\\|" for the sign in code too.
std::string Cell(const std::string& code) {
  std::string cell;
  for (const char c : code) {
    cell += c == '|' ? "\\|" : std::string(1, c);
  }
  return cell;
}

std::string TableRow(const ComparisonTexts& texts, const ComparedEntry& entry) {
  return fmt::format("| {} | {} | {} | {} | {} |\n", texts.Change(entry), Cell(texts.Name(entry)),
                     texts.Before(entry), texts.After(entry), ComparisonTexts::Difference(entry));
}

void WriteFolded(const Comparison& comparison, const ComparisonTexts& texts, ResultOutput& output) {
  const std::span<const ComparedEntry> unchanged =
      std::span(comparison.entries).subspan(Changed(comparison).size());
  if (unchanged.empty()) {
    return;
  }
  output.Write(fmt::format("\n<details><summary>{} unchanged</summary>\n\n", unchanged.size()));
  output.Write("| Function | Bytes |\n|---|---:|\n");
  const size_t left = ForFirst(unchanged, kMostEntries, [&](const ComparedEntry& entry) {
    output.Write(fmt::format("| {} | {} |\n", Cell(texts.Name(entry)), texts.After(entry)));
  });
  if (left != 0) {
    output.Write(fmt::format("\nand {} more\n", left));
  }
  output.Write("\n</details>\n");
}

}  // namespace

void WriteComparisonText(const Comparison& comparison, const ComparedAnalysis& before,
                         const ComparedAnalysis& after, ResultOutput& output) {
  const ComparisonTexts texts(comparison, before, after, CutName);
  output.Write(texts.Heading() + "\n");
  const std::span<const ComparedEntry> changed = Changed(comparison);
  if (changed.empty()) {
    return;
  }
  output.Write("\n" + TableLine({"Before", "After", "Change"}, 0, "Function"));
  const size_t left = ForFirst(changed, kMostEntries, [&](const ComparedEntry& entry) {
    output.Write(
        TableLine({texts.Before(entry), texts.After(entry), ComparisonTexts::Difference(entry)}, 0,
                  fmt::format("{}: {}", texts.Name(entry), texts.Change(entry))));
  });
  if (left != 0) {
    output.Write(TableLine({}, 0, fmt::format("... {} more", left)));
  }
  if (!comparison.causes.empty()) {
    output.Write("\nWhy\n");
    const size_t more = ForFirst(comparison.causes, kMostCauses, [&](const ChangeCause& cause) {
      output.Write("  " + texts.Cause(cause) + "\n");
    });
    output.Write(more == 0 ? "" : fmt::format("  ... {} more\n", more));
  }
}

void WriteComparisonMarkdown(const Comparison& comparison, const ComparedAnalysis& before,
                             const ComparedAnalysis& after, ResultOutput& output) {
  const ComparisonTexts texts(comparison, before, after, MarkdownName);
  output.Write("### " + texts.Heading() + "\n");
  const std::span<const ComparedEntry> changed = Changed(comparison);
  if (changed.empty()) {
    return;
  }
  output.Write("\n| State | Function | Before | After | Change |\n|---|---|---:|---:|---:|\n");
  const size_t left = ForFirst(changed, kMostEntries, [&](const ComparedEntry& entry) {
    output.Write(TableRow(texts, entry));
  });
  output.Write(left == 0 ? "" : fmt::format("\nand {} more\n", left));
  output.Write(comparison.causes.empty() ? "" : "\n");
  const size_t more = ForFirst(comparison.causes, kMostCauses, [&](const ChangeCause& cause) {
    output.Write("- " + texts.Cause(cause) + "\n");
  });
  output.Write(more == 0 ? "" : fmt::format("- and {} more\n", more));
  WriteFolded(comparison, texts, output);
}

// Between more backticks than it holds in a row.
std::string MarkdownName(std::string_view utf8) {
  const std::string name = CutName(utf8);
  size_t longest = 0;
  size_t row = 0;
  for (const char c : name) {
    row = c == '`' ? row + 1 : 0;
    longest = std::max(longest, row);
  }
  const std::string fence(longest + 1, '`');
  const std::string_view blank = longest == 0 ? "" : " ";
  return fmt::format("{0}{1}{2}{1}{0}", fence, blank, name);
}

}  // namespace velkor::reports
