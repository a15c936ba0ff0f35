#include "reports/gate/markdown_output.h"

#include <algorithm>
#include <fmt/format.h>
#include <vector>

#include "reports/gate/finding_order.h"
#include "reports/gate/gate_rules.h"
#include "reports/terminal_text.h"

namespace velkor::reports {
namespace {

constexpr size_t kMostFindings = 50;
constexpr size_t kShortCommit = 7;

class GateMarkdown {
 public:
  GateMarkdown(const GateReport& report, ResultOutput& output) : report_(report), output_(output) {
    for (const GateStack& stack : report.stacks) {
      const bool isShown =
          !report.hasBaseline || stack.state != StackState::kOk || stack.change.value_or(1) != 0;
      (isShown ? shown_ : folded_).push_back(&stack);
    }
  }

  void Write() {
    output_.Write("### Stack: " + Answer() + Commits() + "\n");
    WriteTable(shown_);
    WriteFindings();
    if (!folded_.empty() && !shown_.empty()) {
      output_.Write(fmt::format("\n<details><summary>{} unchanged</summary>\n", folded_.size()));
      WriteTable(folded_);
      output_.Write("\n</details>\n");
    }
  }

 private:
  std::string Answer() const {
    std::vector<std::string> parts;
    const auto add = [&](size_t count, std::string_view what) {
      if (count != 0) {
        parts.push_back(fmt::format("{} {}", count, what));
      }
    };
    const auto inState = [&](StackState state) {
      return static_cast<size_t>(std::ranges::count(report_.stacks, state, &GateStack::state));
    };
    add(inState(StackState::kOverBudget), "over budget");
    add(inState(StackState::kHeadroom), "with too little left");
    const auto lost =
        static_cast<size_t>(std::ranges::count_if(report_.stacks, [](const GateStack& stack) {
          return stack.state == StackState::kRegression && stack.lostBound;
        }));
    add(lost, lost == 1 ? "lost its bound" : "lost their bounds");
    add(inState(StackState::kRegression) - lost, "grew");
    add(inState(StackState::kNoBound), "without a bound");
    size_t others = 0;
    for (const Finding& finding : report_.findings) {
      const bool isOfStack = !finding.stack.empty() || !finding.stacks.empty();
      others += finding.severity == Severity::kError && !isOfStack ? 1U : 0U;
    }
    add(others, others == 1 ? "other error" : "other errors");
    if (!parts.empty()) {
      return fmt::format("{}", fmt::join(parts, ", "));
    }
    return shown_.empty() ? "nothing changed" : "all within their sizes";
  }

  std::string Commits() const {
    if (report_.baselineCommit.empty() || report_.commit.empty()) {
      return "";
    }
    return fmt::format(" ({} → {})", report_.baselineCommit.substr(0, kShortCommit),
                       report_.commit.substr(0, kShortCommit));
  }

  void WriteTable(const std::vector<const GateStack*>& stacks) {
    if (stacks.empty()) {
      return;
    }
    output_.Write("\n| State | Stack | Need | Change | Size | Free |\n|---|---|--:|--:|--:|--:|\n");
    for (const GateStack* stack : stacks) {
      const auto free = stack->Free();
      output_.Write(fmt::format("| {} | {} | {}{} | {} | {} | {} |\n", StackStateName(stack->state),
                                MarkdownText(stack->name), stack->bounded ? "" : "≥", stack->known,
                                stack->change ? fmt::format("{:+}", *stack->change) : "",
                                stack->size ? std::to_string(*stack->size) : "?",
                                free ? std::to_string(*free) : "?"));
    }
  }

  void WriteFindings() {
    size_t count = 0;
    for (const Finding* finding : WorstFirst(report_)) {
      if (count == kMostFindings) {
        break;
      }
      output_.Write((count++ == 0 ? "\n" : "") + LineOfFinding(*finding));
    }
    if (count < report_.findings.size()) {
      output_.Write(fmt::format("- and {} more\n", report_.findings.size() - count));
    }
  }

  static std::string LineOfFinding(const Finding& finding) {
    std::string line =
        fmt::format("- **{}** {}", SeverityName(finding.severity), MarkdownText(finding.text));
    if (!finding.place.file.empty()) {
      line += " (" + MarkdownText(finding.place.file);
      line += finding.place.line != 0 ? fmt::format(":{})", finding.place.line) : ")";
    }
    if (!finding.rows.empty()) {
      line += "<br>" + MarkdownText(finding.rows);
    }
    return line + "\n";
  }

  const GateReport& report_;
  ResultOutput& output_;
  std::vector<const GateStack*> shown_;
  std::vector<const GateStack*> folded_;
};

}  // namespace

void WriteGateMarkdown(const GateReport& report, ResultOutput& output) {
  GateMarkdown(report, output).Write();
}

std::string MarkdownText(std::string_view utf8) {
  constexpr std::string_view kMarks = "\\`*_{}[]#|~";
  std::string text;
  for (const char c : OneLine(utf8)) {
    if (c == '<' || c == '>' || c == '&' || c == '@') {
      text += fmt::format("&#{};", static_cast<int>(c));
    } else {
      text += kMarks.find(c) != kMarks.npos ? std::string{'\\', c} : std::string(1, c);
    }
  }
  return text;
}

}  // namespace velkor::reports
