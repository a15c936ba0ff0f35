#include "ui/page_report.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "core/bound_notes.h"
#include "core/statement_plan.h"
#include "reports/gate/input_gate.h"
#include "reports/page_output.h"
#include "reports/result_file.h"
#include "reports/take_result.h"
#include "ui/analysis_inputs.h"

namespace velkor::ui {

namespace {

std::vector<StkNote> NotesOf(UiContext& context, const StkBounds& bounds) {
  std::vector<StkNote> notes = context.document.InputNotes();
  std::ranges::move(BoundNotes(*context.document.FunctionTable(), bounds, context.messages),
                    std::back_inserter(notes));
  return notes;
}

// Without the messages of the log, which stay in the window.
reports::AnalysisResult ResultOf(UiContext& context, const StkBounds& bounds) {
  CStkDoc& document = context.document;
  return reports::TakeResult({.project = document.PathName(),
                              .compilerName = document.Input()->GeneratorName(),
                              .compilerVersion = document.Input()->GeneratorVersion(),
                              .inputs = InputsOf(document),
                              .log = {},
                              .notes = NotesOf(context, bounds),
                              .functions = *document.FunctionTable(),
                              .roots = document.RootList()->Functions(),
                              .bounds = bounds});
}

}  // namespace

void WritePageReport(UiContext& context, const std::string& path) {
  if (!context.document.MayWriteTo(path)) {
    return;
  }
  const StkBounds& bounds = *context.document.Bounds();
  const reports::AnalysisResult result = ResultOf(context, bounds);
  const StatementPlan plan = PlanStatements(*context.document.FunctionTable(), bounds);
  const std::vector<reports::GateStack> stacks =
      reports::InputGate(*context.document.Input(), *context.document.FunctionTable(), result,
                         context.host)
          .Stacks();
  reports::WriteResultFile(
      path, context.host, context.reporter,
      [&](reports::ResultOutput& output) { reports::WritePage(result, plan, stacks, output); });
}

}  // namespace velkor::ui
