#include "cli/analyze_command.h"

#include <cstdio>

#include "reports/csv_output.h"
#include "reports/explanation_output.h"
#include "reports/json_output.h"
#include "reports/text_output.h"

namespace velkor::cli {
namespace {

void WriteResult(const reports::AnalysisResult& result, const Options& options,
                 reports::ResultOutput& output) {
  switch (options.format) {
    case OutputFormat::kText:
      return reports::WriteText(result, options.full, output);
    case OutputFormat::kJson:
      return reports::WriteJson(result, output);
    case OutputFormat::kCsv:
      return reports::WriteCsv(result, output);
  }
}

// Writes what follows the log, and ends the command.
template <typename Write>
ExitStatus Print(Application& application, Write write) {
  application.StopCatchingInterrupts();
  application.SayNotes();
  reports::ResultOutput output(stdout);
  write(application.Result(), output);
  if (!output.Finish()) {
    application.Say("cannot write to standard output: " + output.Failure());
    return kOutputFailed;
  }
  return application.FinishedStatus();
}

}  // namespace

ExitStatus Analyze(Application& application, const Options& options) {
  const ExitStatus analysed = application.OpenAndAnalyse(options);
  if (analysed != kDone) {
    return analysed;
  }
  return Print(application,
               [&](const reports::AnalysisResult& result, reports::ResultOutput& output) {
                 WriteResult(result, options, output);
               });
}

ExitStatus Explain(Application& application, const Options& options) {
  const ExitStatus analysed = application.OpenAndAnalyse(options);
  if (analysed != kDone) {
    return analysed;
  }
  const StkFunction* function = application.FindFunction(*options.function);
  if (function == nullptr) {
    return kWrongUsage;
  }
  return Print(application,
               [&](const reports::AnalysisResult& result, reports::ResultOutput& output) {
                 if (options.format == OutputFormat::kJson) {
                   reports::WriteExplanationJson(result, function->index, output);
                 } else {
                   reports::WriteExplanation(result, function->index, output);
                 }
               });
}

}  // namespace velkor::cli
