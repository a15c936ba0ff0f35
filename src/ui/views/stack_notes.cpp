#include "ui/views/stack_notes.h"

#include <algorithm>
#include <string>
#include <utility>

#include "ui/commands/commands.h"

namespace velkor::ui {

namespace {

constexpr uint32_t kStackTexts = kDialogTextKey * 500 + 1040;
constexpr auto kStackLine = static_cast<MessageKey>(kStackTexts);
constexpr uint32_t kStateTexts = kStackTexts + 1;  // one a state
constexpr auto kNotChecked = static_cast<MessageKey>(kStackTexts + 6);
constexpr auto kMoreFindings = static_cast<MessageKey>(kStackTexts + 7);
constexpr auto kSummary = static_cast<MessageKey>(kStackTexts + 8);

}  // namespace

StackNotes::StackNotes(UiContext& context, AnswerKeeper& keeper, Show show)
    : context_(context), show_(std::move(show)) {
  context_.document.AddView(*this);
  keeper.AddListener([this](const AnswerKeeper::Answer& answer) { Take(answer); });
}

StackNotes::~StackNotes() {
  context_.document.RemoveView(*this);
}

void StackNotes::OnUpdate(ViewHint hint) {
  if (hint == HINT_RESULTS) {
    logsNext_ = true;
  } else if (hint == HINT_CLEAR) {
    logsNext_ = false;
  }
}

void StackNotes::Take(const AnswerKeeper::Answer& answer) {
  if (!answer || !answer->gate) {
    show_({});
    return;
  }
  if (std::exchange(logsNext_, false)) {
    Log(*answer->gate);
  }
  show_(Summary(*answer->gate));
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
