#include "reports/page_parts.h"

#include <algorithm>
#include <fmt/format.h>
#include <span>

#include "core/bound_arithmetic.h"
#include "reports/function_names.h"
#include "reports/html_text.h"
#include "reports/reason_words.h"

namespace velkor::reports {
namespace {

constexpr std::string_view kExplanationRow =
    "<tr{}><td class=\"n\">{}</td><td class=\"n\">{}</td><td>{}</td></tr>\n";

template <typename Item>
uint64_t BytesOf(std::span<const Item> items) {
  uint64_t bytes = 0;
  for (const Item& item : items) {
    bytes = AddBounded(bytes, item.bytes);
  }
  return bytes;
}

}  // namespace

std::string KnownText(const AnalysedFunction& function) {
  return (function.state == BoundState::kUnbounded ? "≥" : "") + std::to_string(function.known);
}

std::string BytesText(const AnalysedFunction& function) {
  return fmt::format("{}{} bytes", function.state == BoundState::kUnbounded ? "at least " : "",
                     function.known);
}

void PageExplanations::Write(uint32_t function, const std::string& id, bool open) {
  const AnalysedFunction& analysed = result_.functions[function];
  output_.Write(fmt::format("<details id=\"{}\"{}><summary>{}: {}</summary>\n<div>\n", id,
                            open ? " open" : "", HtmlName(result_.ShownDisplayName(function)),
                            BytesText(analysed)));
  WriteRows(function);
  if (analysed.state == BoundState::kOver) {
    output_.Write(fmt::format("<p>Over the limit of {} bytes.</p>\n", result_.sizeLimit));
  } else if (analysed.state == BoundState::kUnbounded) {
    WriteMissing(function);
  }
  output_.Write("</div>\n</details>\n");
}

void PageExplanations::WriteRows(uint32_t function) {
  constexpr size_t kMostRows = 200;
  constexpr size_t kMostCalls = 100'000;
  const std::vector<ExplanationRow> rows = result_.explanations.Of(function, kMostCalls);
  output_.Write(
      "<table>\n<thead><tr><th class=\"n\">Bytes</th><th class=\"n\">Frame</th>"
      "<th>Function</th></tr></thead>\n<tbody>\n");
  const size_t shown = rows.size() > kMostRows + 1 ? kMostRows : rows.size();
  for (const ExplanationRow& row : std::span(rows).first(shown)) {
    WriteRow(row);
  }
  if (shown < rows.size()) {
    output_.Write(fmt::format(kExplanationRow, "", BytesOf(std::span(rows).subspan(shown)), "",
                              fmt::format("{} more functions", rows.size() - shown)));
  }
  output_.Write("</tbody>\n</table>\n");
}

void PageExplanations::WriteRow(const ExplanationRow& row) {
  constexpr size_t kMostCalls = 20;
  std::string name = HtmlName(result_.ShownDisplayName(row.function));
  const std::string adjustment = result_.AdjustmentText(row.function, AdjustmentStyle::kReport);
  name += adjustment.empty() ? "" : " " + HtmlText(adjustment);
  if (row.times > 1) {
    name += fmt::format(" ({} times {})", row.times, row.bytes / row.times);
  }
  output_.Write(fmt::format(kExplanationRow, "", row.bytes, result_.FrameText(row.function), name));
  const size_t shown = std::min(kMostCalls, row.calls.size());
  for (const ExplainedCall& call : std::span(row.calls).first(shown)) {
    output_.Write(fmt::format(kExplanationRow, " class=\"path\"", "", call.bytes,
                              "then " + HtmlName(result_.ShownDisplayName(call.function))));
  }
  if (shown < row.calls.size()) {
    output_.Write(fmt::format(kExplanationRow, " class=\"path\"", "",
                              BytesOf(std::span(row.calls).subspan(shown)),
                              fmt::format("and {} more", row.calls.size() - shown)));
  }
}

void PageExplanations::WriteMissing(uint32_t function) {
  const Uncertainty found = search_.Below(function);
  output_.Write("<p>Not known:</p>\n<ul>\n");
  for (const ReasonKind kind : kReasonKinds) {
    const NamedFunctions& functions = found.Of(kind);
    if (functions.count > 0) {
      output_.Write(fmt::format("<li>{}: {}{}</li>\n", ReasonWords(kind),
                                HtmlName(NameList(result_, functions.named, functions.count)),
                                found.cutShort ? ", and perhaps more" : ""));
    }
  }
  output_.Write("</ul>\n");
}

}  // namespace velkor::reports
