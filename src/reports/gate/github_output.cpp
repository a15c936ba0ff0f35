#include "reports/gate/github_output.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

#include "reports/gate/finding_order.h"
#include "reports/gate/gate_rules.h"
#include "reports/gate/gate_text.h"
#include "reports/terminal_text.h"

namespace velkor::reports {
namespace {

constexpr size_t kMostOfAKind = 9;

std::string_view AnnotationKind(Severity severity) {
  constexpr std::array<std::string_view, 3> kKinds = {"error", "warning", "notice"};
  return kKinds[static_cast<size_t>(severity)];
}

// As the commands want the characters that they use themselves. isProperty: one of those before
// the text.
std::string Escaped(std::string_view text, bool isProperty) {
  std::string escaped;
  for (const char c : text) {
    const bool isSpecial =
        c == '%' || c == '\r' || c == '\n' || (isProperty && (c == ':' || c == ','));
    escaped += isSpecial ? fmt::format("%{:02X}", static_cast<uint8_t>(c)) : std::string(1, c);
  }
  return escaped;
}

std::string Annotation(const Finding& finding) {
  std::string line = fmt::format("::{} ", AnnotationKind(finding.severity));
  if (!finding.place.file.empty()) {
    line += "file=" + Escaped(finding.place.file, true) + ",";
  }
  if (finding.place.line != 0) {
    line += fmt::format("line={},", finding.place.line);
  }
  if (finding.place.column != 0) {
    line += fmt::format("col={},", finding.place.column);
  }
  std::string text = finding.text;
  if (!finding.rows.empty()) {
    text += "\n" + finding.rows;
  }
  text += "\n" + std::string(HelpOf(finding));
  return line + "title=" + Escaped("velkor: " + finding.rule, true) + "::" + Escaped(text, false) +
         "\n";
}

}  // namespace

void WriteGithubAnnotations(const GateReport& report, ResultOutput& output) {
  std::array<size_t, 3> counts{};
  for (const Finding* finding : WorstFirst(report)) {
    size_t& count = counts[static_cast<size_t>(finding->severity)];
    if (++count <= kMostOfAKind) {
      output.Write(Annotation(*finding));
    }
  }
  for (const Severity severity : {Severity::kError, Severity::kWarning, Severity::kNote}) {
    const size_t count = counts[static_cast<size_t>(severity)];
    if (count > kMostOfAKind) {
      output.Write(fmt::format("::{} title=velkor::{} more of this kind are in the log\n",
                               AnnotationKind(severity), count - kMostOfAKind));
    }
  }
  output.Write(OneLine(VerdictLine(report)) + "\n");
}

}  // namespace velkor::reports
