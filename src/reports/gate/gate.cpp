#include "reports/gate/gate.h"

#include <algorithm>
#include <iterator>
#include <set>

#include "reports/gate/bound_causes.h"
#include "reports/gate/cause_findings.h"
#include "reports/gate/finding_places.h"
#include "reports/gate/input_findings.h"
#include "reports/gate/interrupt_levels.h"
#include "reports/gate/stack_change.h"
#include "reports/gate/stack_figures.h"
#include "reports/gate/stack_findings.h"
#include "reports/gate/stack_needs.h"

namespace velkor::reports {
namespace {

constexpr size_t kMostPath = 1000;

std::string CompilerOf(const AnalysisResult& result) {
  return result.compilerName +
         (result.compilerVersion ? " " + *result.compilerVersion : std::string());
}

class GateCheck {
 public:
  GateCheck(const GateInput& input, const Baseline* baseline, SourcePlaces& sources)
      : input_(input), baseline_(baseline), places_(input.result, sources) {}

  GateOutcome Run() {
    interrupts_ = LevelsOf(input_);
    const StackFigures figures(input_, TargetTable::BuiltIn());
    needs_ = NeedsOf(input_, interrupts_, figures);
    if (std::vector<GateFault> faults = Faults(); !faults.empty()) {
      return {std::nullopt, std::move(faults)};
    }
    report_.compiler = CompilerOf(input_.result);
    report_.hasBaseline = baseline_ != nullptr;
    report_.baselineCommit = baseline_ != nullptr ? baseline_->commit : "";
    const std::vector<Finding> causes = TakeCauses();
    JudgeStacks(CausesOf(causes));
    Append(causes);
    Append(NameFindings(needs_, interrupts_, places_));
    if (std::optional<Finding> finding = NoInterruptsKnown(input_, figures, places_)) {
      report_.findings.push_back(*std::move(finding));
    }
    if (baseline_ != nullptr) {
      Append(GoneFindings(input_, needs_, interrupts_, *baseline_, places_));
    }
    Append(InputFindings(input_, places_));
    Finish();
    return {std::move(report_), {}};
  }

 private:
  std::vector<GateFault> Faults() const {
    std::vector<GateFault> faults = interrupts_.faults;
    faults.insert(faults.end(), needs_.faults.begin(), needs_.faults.end());
    if (needs_.stacks.empty()) {
      faults.push_back(
          {{1, 1}, "there is no stack to check: add [stack.NAME] with entry and size"});
    }
    std::ranges::stable_sort(faults, {}, &GateFault::place);
    return faults;
  }

  std::vector<Finding> TakeCauses() {
    BoundCauses causes(input_.result);
    for (uint32_t i = 0; i < needs_.stacks.size(); ++i) {
      if (!needs_.stacks[i].stack.bounded) {
        causes.AddStack(i, needs_.stacks[i].dependsOn);
      }
    }
    return CauseFindings(input_, needs_, interrupts_, causes.Take(), baseline_, places_);
  }

  void JudgeStacks(const std::vector<Baseline::Cause>& causes) {
    const bool isOtherCompiler = baseline_ != nullptr && baseline_->compiler != report_.compiler;
    for (StackNeed& need : needs_.stacks) {
      std::optional<StackChange> change;
      const Baseline::Stack* before =
          baseline_ != nullptr ? baseline_->Find(need.stack.name) : nullptr;
      if (before != nullptr) {
        change = ChangeOf(need.stack, NamesOfRows(need.stack), *before,
                          input_.configuration.gate.growth, MissesLess(need.stack.name, causes));
        need.stack.change = change->change;
        need.stack.lostBound = change->lostBound;
      }
      if (std::optional<Finding> finding =
              JudgeStack(input_, need, change, isOtherCompiler, places_)) {
        report_.findings.push_back(*std::move(finding));
      }
      if (change && change->isNowKnown) {
        report_.findings.push_back(NowKnown(need.stack));
      }
    }
  }

  std::vector<std::string> NamesOfRows(const GateStack& stack) const {
    std::vector<std::string> names;
    names.reserve(stack.rows.size());
    for (const StackRow& row : stack.rows) {
      names.push_back(
          row.part == StackRow::Part::kFigure ? "" : StableName(input_.result, row.function));
    }
    return names;
  }

  // A cause of the baseline that the stack has no more.
  bool MissesLess(const std::string& stack, const std::vector<Baseline::Cause>& now) const {
    Baseline current;
    for (const Baseline::Cause& cause : now) {
      if (std::ranges::find(cause.stacks, stack) != cause.stacks.end()) {
        current.causes.push_back(cause);
      }
    }
    std::vector<Baseline::Cause> before;
    for (const Baseline::Cause& cause : baseline_->causes) {
      if (std::ranges::find(cause.stacks, stack) != cause.stacks.end()) {
        before.push_back(cause);
      }
    }
    const std::vector<bool> held = current.Holds(before);
    return std::ranges::find(held, false) != held.end();
  }

  Finding NowKnown(const GateStack& stack) {
    Finding finding;
    finding.rule = "now-known";
    finding.severity = Severity::kNote;
    finding.stack = stack.name;
    finding.text = "stack " + stack.name + " lacked a bound of what is now known: it needs " +
                   (stack.bounded ? "" : "at least ") + std::to_string(stack.known) + " bytes";
    finding.place = places_.InConfiguration(stack.place);
    return finding;
  }

  void Append(std::vector<Finding> findings) {
    std::ranges::move(findings, std::back_inserter(report_.findings));
  }

  void Finish() {
    std::ranges::stable_sort(report_.findings, {}, &Finding::severity);
    std::set<std::string> handlers;
    for (const uint32_t handler : interrupts_.handlers) {
      handlers.insert(StableName(input_.result, handler));
    }
    report_.handlers.assign(handlers.begin(), handlers.end());
    for (StackNeed& need : needs_.stacks) {
      report_.stacks.push_back(std::move(need.stack));
    }
  }

  const GateInput& input_;
  const Baseline* baseline_;
  FindingPlaces places_;
  InterruptLevels interrupts_;
  StackNeeds needs_;
  GateReport report_;
};

}  // namespace

GateOutcome CheckGate(const GateInput& input, const Baseline* baseline, SourcePlaces& sources) {
  return GateCheck(input, baseline, sources).Run();
}

Baseline BaselineOf(const GateReport& report, const AnalysisResult& result, std::string project,
                    std::string commit) {
  Baseline baseline;
  baseline.project = std::move(project);
  baseline.commit = std::move(commit);
  baseline.compiler = report.compiler;
  for (const GateStack& stack : report.stacks) {
    Baseline::Stack& kept = baseline.stacks.emplace_back();
    kept.name = stack.name;
    kept.known = stack.known;
    kept.bounded = stack.bounded;
    for (const uint32_t entry : stack.found) {
      kept.entries.push_back(StableName(result, entry));
    }
    for (const StackRow& row : stack.rows) {
      if (row.part != StackRow::Part::kFigure && kept.path.size() < kMostPath) {
        kept.path.emplace_back(StableName(result, row.function), row.bytes);
      }
    }
  }
  baseline.handlers = report.handlers;
  baseline.causes = CausesOf(report.findings);
  std::ranges::stable_sort(baseline.stacks, {}, &Baseline::Stack::name);
  std::ranges::sort(baseline.causes);
  const auto same = [](const Baseline::Cause& left, const Baseline::Cause& right) {
    return left.rule == right.rule && left.name == right.name;
  };
  baseline.causes.erase(std::unique(baseline.causes.begin(), baseline.causes.end(), same),
                        baseline.causes.end());
  return baseline;
}

bool IsSameProject(std::string_view left, std::string_view right) {
  const std::string_view shorter = left.size() < right.size() ? left : right;
  const std::string_view longer = left.size() < right.size() ? right : left;
  return longer == shorter ||
         (longer.ends_with(shorter) && longer[longer.size() - shorter.size() - 1] == '/');
}

}  // namespace velkor::reports
