#include "reports/gate/input_gate.h"

#include <algorithm>
#include <utility>

#include "readers/configured_input.h"

namespace velkor::reports {
namespace {

// Where the compiler may have been started.
std::vector<std::string> BuildFolders(const ProgramInput& input, const CodePage& codePage) {
  if (input.Settings() == nullptr) {
    return {input.Path()};
  }
  std::vector<std::string> folders;
  for (const std::string& folder : input.Settings()->input) {
    folders.push_back(PathBeside(input.Path(), folder, codePage));
  }
  return folders;
}

}  // namespace

InputGate::InputGate(const ProgramInput& input, const StkFunctionTable& functions,
                     const AnalysisResult& result, const Host& host)
    : input_(input),
      functions_(functions),
      result_(result),
      sources_(host.files, host.codePage, input.Path(), BuildFolders(input, host.codePage)) {}

GateOutcome InputGate::Check(const std::vector<StackLimit>& limits, const Baseline* baseline) {
  static const Configuration kNone;
  const Configuration& configuration = IsConfigured() ? *input_.Settings() : kNone;
  std::vector<std::string> entries;
  entries.reserve(limits.size());
  for (const StackLimit& limit : limits) {
    entries.push_back(limit.entry);
  }
  const NameMeanings names = MeaningsOf(configuration, entries, functions_);
  return CheckGate({.result = result_,
                    .configuration = configuration,
                    .facts = input_.Facts(),
                    .names = names,
                    .limits = limits,
                    .isConfigured = IsConfigured()},
                   baseline, sources_);
}

std::vector<GateStack> InputGate::Stacks() {
  GateOutcome outcome = IsConfigured() ? Check({}, nullptr) : GateOutcome();
  return outcome.report ? std::move(outcome.report->stacks) : std::vector<GateStack>();
}

std::vector<GateStack> InputGate::StacksOf(uint32_t function) {
  std::vector<GateStack> stacks = Stacks();
  std::erase_if(stacks, [&](const GateStack& stack) {
    return std::ranges::find(stack.found, function) == stack.found.end();
  });
  return stacks;
}

}  // namespace velkor::reports
