#include "cli/analyze_command.h"

#include "cli/command_output.h"
#include "core/statement_plan.h"
#include "reports/answer_output.h"
#include "reports/csv_output.h"
#include "reports/explanation_output.h"
#include "reports/gate/gate_text.h"
#include "reports/gate/input_gate.h"
#include "reports/json_output.h"
#include "reports/text_output.h"

namespace velkor::cli {
namespace {

reports::InputGate GateOf(Application& application, const reports::AnalysisResult& result) {
  return {*application.Document().Input(), *application.Document().FunctionTable(), result,
          application.GetHost()};
}

// The numbers of functions know nothing of interrupts.
void WriteStacks(const std::vector<reports::GateStack>& stacks, reports::ResultOutput& output) {
  if (!stacks.empty()) {
    output.Write("\nStacks of velkor.toml, interrupts counted (velkor-cli check says more)\n");
    reports::WriteStackLines(stacks, output);
  }
}

void WriteAnalysisText(Application& application, const Options& options,
                       const StkFunction* function, reports::ResultOutput& output) {
  const reports::AnalysisResult result = application.Result();
  if (options.chains || options.full) {
    reports::WriteAllText(result, options.full, output);
    return;
  }
  const StkFunctionTable& functions = *application.Document().FunctionTable();
  const StkBounds& bounds = *application.Document().Bounds();
  reports::AnswerChoice choice;
  choice.top = options.top;
  if (function != nullptr) {
    choice.function = function->index;
  }
  const StatementPlan plan = function != nullptr
                                 ? PlanStatementsFor(functions, bounds, function->index)
                                 : PlanStatements(functions, bounds);
  reports::WriteAnswer(result, plan, choice, output);
  if (function == nullptr) {
    WriteStacks(GateOf(application, result).Stacks(), output);
  }
}

void WriteAnalysis(Application& application, const Options& options, const StkFunction* function,
                   reports::ResultOutput& output) {
  switch (options.format) {
    case OutputFormat::kText:
      return WriteAnalysisText(application, options, function, output);
    case OutputFormat::kJson:
      return reports::WriteJson(application.Result(), output, application.GetHost().threads);
    case OutputFormat::kCsv:
      return reports::WriteCsv(application.Result(), output, application.GetHost().threads);
    case OutputFormat::kMarkdown:
      break;
  }
}

}  // namespace

ExitStatus Analyze(Application& application, const Options& options) {
  const ExitStatus analysed = application.OpenAndAnalyse(options);
  if (analysed != kDone) {
    return analysed;
  }
  const StkFunction* function = nullptr;
  if (options.function) {
    function = application.FindFunction(*options.function);
    if (function == nullptr) {
      return application.NotFoundStatus();
    }
  }
  return WriteResult(application, options.output, [&](reports::ResultOutput& output) {
    WriteAnalysis(application, options, function, output);
  });
}

ExitStatus Explain(Application& application, const Options& options) {
  const ExitStatus analysed = application.OpenAndAnalyse(options);
  if (analysed != kDone) {
    return analysed;
  }
  const StkFunction* function = application.FindFunction(*options.function);
  if (function == nullptr) {
    return application.NotFoundStatus();
  }
  return WriteResult(application, options.output, [&](reports::ResultOutput& output) {
    const reports::AnalysisResult result = application.Result();
    const std::vector<reports::GateStack> stacks =
        GateOf(application, result).StacksOf(function->index);
    const auto write = options.format == OutputFormat::kJson ? reports::WriteExplanationJson
                                                             : reports::WriteExplanation;
    write(result, function->index, output, stacks);
  });
}

}  // namespace velkor::cli
