#include "reports/gate/cause_findings.h"

#include <algorithm>
#include <fmt/format.h>
#include <map>
#include <set>

#include "reports/terminal_text.h"

namespace velkor::reports {
namespace {

constexpr size_t kMostStacks = 5;

constexpr std::string_view kNoBound = "no-bound";
constexpr std::string_view kUnlistedInterrupt = "unlisted-interrupt";
constexpr std::string_view kUnlistedTask = "unlisted-task";

bool IsOfCauses(std::string_view rule) {
  return rule == kNoBound || rule == kUnlistedInterrupt || rule == kUnlistedTask;
}

std::string StacksText(const std::vector<std::string>& stacks) {
  std::string text = stacks.size() == 1 ? "stack " : "stacks ";
  for (size_t i = 0; i < stacks.size() && i < kMostStacks; ++i) {
    text += (i == 0 ? "" : ", ") + OneLine(stacks[i]);
  }
  if (stacks.size() > kMostStacks) {
    text += fmt::format(" and {} more", stacks.size() - kMostStacks);
  }
  return text + (stacks.size() == 1 ? " has" : " have");
}

class CauseSearch {
 public:
  CauseSearch(const GateInput& input, const StackNeeds& needs, FindingPlaces& places)
      : input_(input), needs_(needs), places_(places) {}

  void AddCause(const BoundCause& cause) {
    Finding finding;
    finding.rule = kNoBound;
    finding.cause = cause.name;
    for (const uint32_t stack : cause.stacks) {
      finding.stacks.push_back(needs_.stacks[stack].stack.name);
    }
    finding.stack = finding.stacks.size() == 1 ? finding.stacks.front() : "";
    finding.weight = finding.stacks.size();
    finding.text =
        fmt::format("{} no bound: {}", StacksText(finding.stacks), TextOf(cause, input_.result));
    finding.help = HelpFor(cause, input_.result);
    const TextPlace place = needs_.stacks[cause.stacks.front()].stack.place;
    finding.place = cause.kind == ReasonKind::kIndirect
                        ? places_.OfIndirectCall(cause.function, place)
                        : places_.OfFunction(cause.function, place);
    findings_.push_back(std::move(finding));
  }

  void AddUnlisted(std::string_view rule, std::string_view kind, uint32_t function,
                   std::string_view text, std::string_view help) {
    Finding finding;
    finding.rule = rule;
    finding.severity = Severity::kWarning;
    finding.cause = fmt::format("{} {}", kind, StableName(input_.result, function));
    finding.text = fmt::format(fmt::runtime(text), input_.result.ShownSpecName(function));
    finding.help = fmt::format(fmt::runtime(help), input_.result.SpecName(function));
    const TextPlace levels = input_.configuration.PlaceOf("interrupts.levels");
    const bool isThere = rule == kUnlistedInterrupt && levels != TextPlace();
    finding.place = places_.OfFunction(function, isThere ? levels : TextPlace{1, 1});
    findings_.push_back(std::move(finding));
  }

  std::vector<Finding> Take() { return std::move(findings_); }

 private:
  const GateInput& input_;
  const StackNeeds& needs_;
  FindingPlaces& places_;
  std::vector<Finding> findings_;
};

// What was known before only warns; what is new does not.
void SetSeverities(const Baseline& baseline, std::vector<Finding>& findings) {
  const std::vector<bool> held = baseline.Holds(CausesOf(findings));
  for (size_t i = 0; i < findings.size(); ++i) {
    findings[i].severity = held[i] ? Severity::kWarning : Severity::kError;
  }
}

// Functions of the program that the baseline counts, by name, and these are not among: entries with
// their stack, handlers.
std::map<std::string, std::string> CountedBefore(const AnalysisResult& result,
                                                 const Baseline& baseline,
                                                 const std::vector<uint32_t>& counted) {
  std::map<std::string, std::string> left;
  for (const std::string& handler : baseline.handlers) {
    left[handler] = "";
  }
  for (const Baseline::Stack& stack : baseline.stacks) {
    for (const std::string& entry : stack.entries) {
      left[entry] = stack.name;
    }
  }
  for (const uint32_t function : counted) {
    left.erase(StableName(result, function));
  }
  if (left.empty()) {
    return left;
  }
  std::set<std::string> present;
  for (uint32_t function = 0; function < result.functions.size(); ++function) {
    if (std::string name = StableName(result, function); left.contains(name)) {
      present.insert(std::move(name));
    }
  }
  std::erase_if(left, [&](const auto& each) { return !present.contains(each.first); });
  return left;
}

Finding Gone(std::string_view rule, std::string cause, std::string text, FindingPlace place) {
  Finding finding;
  finding.rule = rule;
  finding.cause = std::move(cause);
  finding.text = std::move(text);
  finding.help = "name it again, or take it out of the baseline with --update-baseline";
  finding.place = std::move(place);
  return finding;
}

}  // namespace

std::vector<Finding> CauseFindings(const GateInput& input, const StackNeeds& needs,
                                   const InterruptLevels& interrupts,
                                   const std::vector<BoundCause>& causes, const Baseline* baseline,
                                   FindingPlaces& places) {
  CauseSearch search(input, needs, places);
  for (const BoundCause& cause : causes) {
    search.AddCause(cause);
  }
  if (input.isConfigured) {
    for (const uint32_t handler : interrupts.unlisted) {
      search.AddUnlisted(kUnlistedInterrupt, "interrupt", handler,
                         "no level names the interrupt handler {}: it is counted as a level of "
                         "its own",
                         "name {} in a level of [interrupts], or in ignore if it never runs");
    }
    const UnlistedTasks unlisted = UnlistedTasksOf(input, interrupts, needs);
    for (const uint32_t task : unlisted.tasks) {
      search.AddUnlisted(kUnlistedTask, "task", task, "{} may be a task, and no stack names it",
                         "add a stack with entry = \"{}\"");
    }
    for (const uint32_t top : unlisted.tops) {
      search.AddUnlisted(
          kUnlistedTask, "task", top, "nothing calls {}, and no stack and no level names it",
          "name {} as the entry of a stack, in a level, or as what is called "
          "through a pointer (CALL=); or in ignore of [interrupts] if it never runs");
    }
  }
  std::vector<Finding> findings = search.Take();
  if (baseline != nullptr) {
    SetSeverities(*baseline, findings);
  }
  return findings;
}

std::vector<Finding> GoneFindings(const GateInput& input, const StackNeeds& needs,
                                  const InterruptLevels& interrupts, const Baseline& baseline,
                                  FindingPlaces& places) {
  std::vector<uint32_t> counted = interrupts.handlers;
  counted.insert(counted.end(), interrupts.ignored.begin(), interrupts.ignored.end());
  for (const StackNeed& need : needs.stacks) {
    counted.insert(counted.end(), need.stack.found.begin(), need.stack.found.end());
  }
  std::vector<Finding> findings;
  const FindingPlace place = places.InConfiguration({1, 1});
  for (const auto& [name, stack] : CountedBefore(input.result, baseline, counted)) {
    findings.push_back(stack.empty() ? Gone(kUnlistedInterrupt, "interrupt " + name,
                                            "the baseline counts the interrupt handler " +
                                                OneLine(name) + ", which is not counted any more",
                                            place)
                                     : Gone(kUnlistedTask, "task " + name,
                                            "the baseline has a stack " + OneLine(stack) +
                                                " with the entry " + OneLine(name) +
                                                ", which no stack names any more",
                                            place));
  }
  return findings;
}

std::vector<Baseline::Cause> CausesOf(const std::vector<Finding>& findings) {
  std::vector<Baseline::Cause> causes;
  for (const Finding& finding : findings) {
    if (IsOfCauses(finding.rule)) {
      causes.push_back({finding.rule, finding.cause, finding.stacks});
    }
  }
  return causes;
}

}  // namespace velkor::reports
