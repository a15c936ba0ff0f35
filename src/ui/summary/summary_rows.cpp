#include "ui/summary/summary_rows.h"

#include <algorithm>
#include <utility>

#include "reports/note_text.h"
#include "reports/statement_blocks.h"
#include "ui/shown_text.h"
#include "ui/summary/summary_texts.h"

namespace velkor::ui {

namespace {

SummaryMark MarkOf(const reports::GateStack& stack) {
  switch (stack.state) {
    case reports::StackState::kOk:
      return SummaryMark::kFine;
    case reports::StackState::kNoBound:
      return SummaryMark::kOpen;
    default:
      return SummaryMark::kBad;
  }
}

SummaryMark MarkOf(reports::Severity severity) {
  switch (severity) {
    case reports::Severity::kError:
      return SummaryMark::kBad;
    case reports::Severity::kWarning:
      return SummaryMark::kOpen;
    case reports::Severity::kNote:
      break;
  }
  return SummaryMark::kNote;
}

}  // namespace

SummaryRows::SummaryRows(const UiContext& context) : context_(context), needs_(context) {}

QString SummaryRows::Text(uint32_t item) const {
  return context_.Text(item);
}

QString SummaryRows::Lead(const AnalysisAnswer* answer, bool isWorking) const {
  if (!answer) {
    return Text(isWorking ? kLeadWorking : kLeadNothing);
  }
  if (answer->entries.empty()) {
    return Text(kLeadNoFunctions);
  }
  const reports::AnalysisResult& result = answer->result;
  const uint32_t largest = answer->entries.front();
  const reports::AnalysedFunction& analysed = result.functions[largest];
  const bool bounded = analysed.state != BoundState::kUnbounded;
  return Filled(Text(bounded ? kLeadBound : kLeadAtLeast),
                {FromUtf8(result.ShownSpecName(largest)), QString::number(analysed.known),
                 QString::number(result.roots.size()), QString::number(answer->unbounded)});
}

std::vector<SummaryGroup> SummaryRows::Needs(const AnalysisAnswer& answer) const {
  std::vector<SummaryGroup> groups;
  if (answer.gate && answer.gate->report) {
    std::vector<SummaryRow> rows;
    for (const reports::GateStack& stack : answer.gate->report->stacks) {
      rows.push_back(StackRowOf(stack, answer));
    }
    const size_t count = rows.size();
    AddGroup(kStacksGroup, count, std::move(rows), groups);
  }
  std::vector<SummaryRow> rows;
  rows.reserve(answer.entries.size());
  for (const uint32_t function : answer.entries) {
    rows.push_back(EntryRow(function, answer));
  }
  AddGroup(kEntriesGroup, answer.result.roots.size(), std::move(rows), groups);
  return groups;
}

// The rows that are too many for the group are told of in a last one.
void SummaryRows::AddGroup(uint32_t title, size_t count, std::vector<SummaryRow> rows,
                           std::vector<SummaryGroup>& groups) const {
  if (rows.empty()) {
    return;
  }
  if (rows.size() < count) {
    rows.push_back({.cells = {Filled(Text(kMoreRows), {QString::number(count - rows.size())})}});
  }
  groups.push_back({Filled(Text(title), {QString::number(count)}), std::move(rows)});
}

SummaryRow SummaryRows::StackRowOf(const reports::GateStack& stack,
                                   const AnalysisAnswer& answer) const {
  const QString need = NeedTexts::Need(stack.known, stack.bounded);
  SummaryRow row;
  row.mark = MarkOf(stack);
  row.function = stack.deepest;
  const QString size = stack.size ? QString::number(*stack.size) : Text(kSizeNotKnown);
  QString why = Text(kStackStates + static_cast<uint32_t>(stack.state));
  if (stack.deepest) {
    const QString reasons = Why(*stack.deepest, answer);
    why += reasons.isEmpty() ? "" : "; " + reasons;
  }
  row.cells = {FromUtf8(stack.name), Filled(Text(kNeedOfSize), {need, size}), why};
  for (const reports::StackRow& part : stack.rows) {
    row.tip += QString(row.tip.isEmpty() ? "" : "\n") + QString::number(part.bytes) + "  " +
               FromUtf8(part.what);
  }
  if (stack.size) {
    row.budget = {stack.known, *stack.size, stack.bounded};
  }
  return row;
}

SummaryRow SummaryRows::EntryRow(uint32_t function, const AnalysisAnswer& answer) const {
  const reports::AnalysedFunction& analysed = answer.result.functions[function];
  SummaryRow row;
  row.mark = analysed.state == BoundState::kUnbounded ? SummaryMark::kOpen
             : analysed.state == BoundState::kOver    ? SummaryMark::kBad
                                                      : SummaryMark::kFine;
  row.function = function;
  row.cells = {FromUtf8(answer.result.ShownDisplayName(function)),
               NeedTexts::Need(analysed.known, analysed.state != BoundState::kUnbounded),
               Why(function, answer)};
  return row;
}

QString SummaryRows::Why(uint32_t function, const AnalysisAnswer& answer) const {
  const reports::AnalysedFunction& analysed = answer.result.functions[function];
  if (analysed.state == BoundState::kOver) {
    return needs_.OverLimit();
  }
  if (analysed.state == BoundState::kBounded) {
    return analysed.complete ? QString() : needs_.MoreThanTotal();
  }
  QStringList reasons;
  for (const ReasonWitness& reason : answer.result.Reasons(function)) {
    reasons.push_back(needs_.ReasonWord(reason.kind) + " (" +
                      FromUtf8(answer.result.ShownSpecName(reason.function)) + ")");
  }
  return reasons.join(", ");
}

std::vector<SummaryGroup> SummaryRows::Wanted(const AnalysisAnswer& answer) const {
  std::vector<SummaryGroup> groups;
  size_t wanted = 0;
  for (const PlannedStep& step : answer.plan.steps) {
    wanted += step.statements.size();
  }
  AddGroup(kWantedGroup, wanted, WantedRows(answer), groups);
  if (answer.gate) {
    std::vector<SummaryRow> findings = FindingRows(*answer.gate);
    const size_t count = findings.size();
    AddGroup(kFindingsGroup, count, std::move(findings), groups);
  }
  AddGroup(kNotesGroup, answer.result.notes.size(), NoteRows(answer), groups);
  return groups;
}

std::vector<SummaryRow> SummaryRows::WantedRows(const AnalysisAnswer& answer) const {
  std::vector<SummaryRow> rows;
  for (const reports::StatementBlock& block :
       reports::StatementBlocks(answer.plan, kMostWanted)) {
    const size_t count = block.statements.size();
    const QString frees = QString::number(block.frees);
    for (size_t i = 0; i < count && rows.size() < kMostWanted; ++i) {
      const WantedStatement& wanted = block.statements[i];
      SummaryRow row;
      row.mark = SummaryMark::kOpen;
      row.function = wanted.function;
      row.cells = {FromUtf8(answer.result.ShownSpecName(wanted.function)), Values(wanted.settles),
                   i > 0        ? Text(kFreesAbove)
                   : count == 1 ? frees
                                : Filled(Text(kFreesTogether), {frees, QString::number(count - 1)})};
      rows.push_back(std::move(row));
    }
  }
  return rows;
}

QString SummaryRows::Values(ReasonSet settles) const {
  QStringList values;
  for (const ReasonKind kind : kReasonKinds) {
    const QString value = Text(kValueTexts + static_cast<uint32_t>(kind));
    if (settles.Has(kind) && !values.contains(value)) {
      values.push_back(value);
    }
  }
  return values.join(", ");
}

std::vector<SummaryRow> SummaryRows::FindingRows(const reports::GateOutcome& gate) const {
  std::vector<SummaryRow> rows;
  for (const reports::GateFault& fault : gate.faults) {
    rows.push_back({.cells = {FromUtf8(fault.text)}, .mark = SummaryMark::kBad});
  }
  if (gate.report) {
    for (const reports::Finding& finding : gate.report->findings) {
      const QString text = FromUtf8(finding.text);
      rows.push_back({.cells = {text},
                      .tip = finding.help.empty() ? text : text + "\n" + FromUtf8(finding.help),
                      .mark = MarkOf(finding.severity)});
    }
  }
  return rows;
}

std::vector<SummaryRow> SummaryRows::NoteRows(const AnalysisAnswer& answer) const {
  std::vector<SummaryRow> rows;
  for (const reports::AnalysisNote& note : answer.result.notes) {
    if (rows.size() == kMostNotes) {
      break;
    }
    const QString text = FromUtf8(reports::NoteLine(note));
    rows.push_back(
        {.cells = {text}, .tip = text, .mark = SummaryMark::kNote, .function = note.function});
  }
  return rows;
}

}  // namespace velkor::ui
