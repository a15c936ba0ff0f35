#include "ui/views/stack_notes.h"

#include <algorithm>
#include <string>

#include "reports/gate/input_gate.h"
#include "reports/take_result.h"
#include "ui/commands/commands.h"

namespace velkor::ui {

namespace {

constexpr uint32_t kStackTexts = kDialogTextKey * 500 + 1040;
constexpr auto kStackLine = static_cast<MessageKey>(kStackTexts);
constexpr uint32_t kStateTexts = kStackTexts + 1;  // one a state
constexpr auto kNotChecked = static_cast<MessageKey>(kStackTexts + 6);
constexpr auto kMoreFindings = static_cast<MessageKey>(kStackTexts + 7);
constexpr auto kSummary = static_cast<MessageKey>(kStackTexts + 8);

bool StatesStacks(CStkDoc& document) {
  const Configuration* settings =
      document.Input() != nullptr ? document.Input()->Settings() : nullptr;
  return settings != nullptr && !settings->stacks.empty();
}

}  // namespace

StackNotes::StackNotes(UiContext& context, Show show) : context_(context), show_(std::move(show)) {
  context_.document.AddView(*this);
}

StackNotes::~StackNotes() {
  context_.document.RemoveView(*this);
}

void StackNotes::OnUpdate(ViewHint hint) {
  const bool isResult = hint == HINT_RESULTS || hint == HINT_STRUCTURE || hint == HINT_SIZES;
  if (hint == HINT_CLEAR || !isResult) {
    if (hint == HINT_CLEAR) {
      show_({});
    }
    return;
  }
  if (!StatesStacks(context_.document) || context_.document.Bounds() == nullptr) {
    return;
  }
  const reports::GateOutcome outcome = Ask();
  if (hint == HINT_RESULTS) {
    Log(outcome);
  }
  show_(Summary(outcome));
}

// What was not read is noted anyway.
reports::GateOutcome StackNotes::Ask() const {
  CStkDoc& document = context_.document;
  const ProgramInput& input = *document.Input();
  const std::vector<StkMessage> noLog;
  const reports::AnalysisResult result =
      reports::TakeResult({.project = document.PathName(),
                           .compilerName = input.GeneratorName(),
                           .compilerVersion = input.GeneratorVersion(),
                           .inputs = {},
                           .log = noLog,
                           .notes = {},
                           .functions = *document.FunctionTable(),
                           .roots = document.RootList()->Functions(),
                           .bounds = *document.Bounds()});
  return reports::InputGate(input, *document.FunctionTable(), result, context_.host)
      .Check({}, nullptr);
}

void StackNotes::Log(const reports::GateOutcome& outcome) const {
  for (const reports::GateFault& fault : outcome.faults) {
    context_.reporter.PostLog(
        kNotChecked, {MessageFile{context_.document.PathName()}, MessageLine{fault.place.line},
                      std::string_view(fault.text)});
  }
  if (!outcome.report) {
    return;
  }
  uint32_t others = 0;
  for (const reports::Finding& finding : outcome.report->findings) {
    others += finding.stack.empty() || finding.rule == "no-bound" ? 1U : 0U;
  }
  for (const reports::GateStack& stack : outcome.report->stacks) {
    LogStack(stack);
  }
  if (others != 0) {
    context_.reporter.PostLog(kMoreFindings, {others});
  }
}

void StackNotes::LogStack(const reports::GateStack& stack) const {
  const CodePage& codePage = context_.host.codePage;
  const std::string name = codePage.FromUtf8(stack.name).value_or("?");
  const std::string need = (stack.bounded ? "" : ">=") + std::to_string(stack.known);
  const std::string size = stack.size ? std::to_string(*stack.size) : "?";
  const auto state = static_cast<MessageKey>(kStateTexts + static_cast<uint32_t>(stack.state));
  context_.reporter.PostLog(kStackLine, {std::string_view(name), std::string_view(need),
                                         std::string_view(size), context_.messages.Text(state)});
}

QString StackNotes::Summary(const reports::GateOutcome& outcome) const {
  if (!outcome.report) {
    return {};
  }
  const std::vector<reports::GateStack>& stacks = outcome.report->stacks;
  const auto inOrder = static_cast<uint32_t>(
      std::ranges::count(stacks, reports::StackState::kOk, &reports::GateStack::state));
  return context_.Decoded(context_.messages.FormatMessageText(
      kSummary, {inOrder, static_cast<uint32_t>(stacks.size())}));
}

}  // namespace velkor::ui
