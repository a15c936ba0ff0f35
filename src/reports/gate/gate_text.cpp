#include "reports/gate/gate_text.h"

#include <algorithm>
#include <fmt/format.h>
#include <map>

#include "reports/gate/gate_rules.h"
#include "reports/terminal_text.h"

namespace velkor::reports {
namespace {

constexpr size_t kMostOfOneRule = 20;  // of warnings and notes

std::string PlaceText(const FindingPlace& place) {
  std::string text = place.file;
  for (const uint32_t number : {place.line, place.column}) {
    if (number == 0) {
      break;
    }
    text += ":" + std::to_string(number);
  }
  return text.empty() ? text : text + ": ";
}

void WriteFinding(const Finding& finding, ResultOutput& output) {
  output.Write(OneLine(PlaceText(finding.place) + std::string(SeverityName(finding.severity)) +
                       ": " + finding.text) +
               " [" + finding.rule + "]\n");
  if (!finding.rows.empty()) {
    output.Write("  " + finding.rows + "\n");
  }
  if (finding.severity != Severity::kNote) {
    output.Write("  " + OneLine(HelpOf(finding)) + "\n");
  }
}

void WriteFindings(const GateReport& report, ResultOutput& output) {
  std::map<std::string, size_t> counts;
  for (const Finding& finding : report.findings) {
    const size_t count = ++counts[finding.rule + " " + std::string(SeverityName(finding.severity))];
    if (finding.severity == Severity::kError || count <= kMostOfOneRule) {
      WriteFinding(finding, output);
    }
  }
  for (const auto& [rule, count] : counts) {
    if (count > kMostOfOneRule && !rule.ends_with(" error")) {
      output.Write(fmt::format("{} more findings of {} (--format json shows them)\n",
                               count - kMostOfOneRule, rule.substr(0, rule.find(' '))));
    }
  }
  if (!report.findings.empty()) {
    output.Write("\n");
  }
}

std::string FreeText(const GateStack& stack) {
  const int64_t free = stack.Free().value_or(0);
  return !stack.size ? "size not known"
         : free < 0  ? fmt::format("{} too many", -free)
                     : fmt::format("{} free", free);
}

// Nothing is in order that was held against no size.
std::string_view StateText(const GateStack& stack) {
  return !stack.size && stack.state == StackState::kOk ? "?" : StackStateName(stack.state);
}

std::string Counted(size_t count, std::string_view what) {
  return fmt::format("{} {}{}", count, what, count == 1 ? "" : "s");
}

}  // namespace

void WriteGateText(const GateReport& report, ResultOutput& output) {
  WriteFindings(report, output);
  WriteStackLines(report.stacks, output);
  output.Write(VerdictLine(report) + "\n");
}

void WriteStackLines(std::span<const GateStack> stacks, ResultOutput& output) {
  size_t width = 0;
  for (const GateStack& stack : stacks) {
    width = std::max(width, CharacterCount(OneLine(stack.name)));
  }
  for (const GateStack& stack : stacks) {
    const std::string name = OneLine(stack.name);
    const std::string need = (stack.bounded ? "" : ">=") + std::to_string(stack.known);
    const std::string size = stack.size ? fmt::format("of {} bytes", *stack.size) : "bytes";
    std::string line = fmt::format("{}{}  {:>10} {:<18} {:<22} {}", name,
                                   std::string(width - CharacterCount(name), ' '), need, size,
                                   FreeText(stack), StateText(stack));
    if (stack.change && *stack.change != 0) {
      line += fmt::format("  ({:+} against the baseline)", *stack.change);
    }
    output.Write(line + "\n");
  }
}

std::string VerdictLine(const GateReport& report) {
  const auto count = [&](Severity severity) {
    return static_cast<size_t>(std::ranges::count(report.findings, severity, &Finding::severity));
  };
  const auto withoutBound =
      static_cast<size_t>(std::ranges::count(report.stacks, false, &GateStack::bounded));
  return fmt::format("{}{}, {}, {}: {}", Counted(report.stacks.size(), "stack"),
                     withoutBound == 0 ? "" : fmt::format(" ({} without a bound)", withoutBound),
                     Counted(count(Severity::kError), "error"),
                     Counted(count(Severity::kWarning), "warning"),
                     report.Passed() ? "passed" : "not passed");
}

}  // namespace velkor::reports
