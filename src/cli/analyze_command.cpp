#include "cli/analyze_command.h"

#include <cstdio>

#include "cli/csv_output.h"
#include "cli/explanation_output.h"
#include "cli/json_output.h"
#include "cli/text_output.h"

namespace velkor {
namespace {

void WriteResult(const AnalysisResult& result, const Options& options, ResultOutput& output) {
  switch (options.format) {
    case OutputFormat::kText:
      return WriteText(result, options.full, output);
    case OutputFormat::kJson:
      return WriteJson(result, output);
    case OutputFormat::kCsv:
      return WriteCsv(result, output);
  }
}

// Writes what follows the log, and ends the command.
template <typename Write>
ExitStatus Print(Application& application, Write write) {
  application.StopCatchingInterrupts();
  application.SayNotes();
  ResultOutput output(stdout);
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
  return Print(application, [&](const AnalysisResult& result, ResultOutput& output) {
    WriteResult(result, options, output);
  });
}

ExitStatus Explain(Application& application, const Options& options) {
  const ExitStatus analysed = application.OpenAndAnalyse(options);
  if (analysed != kDone) {
    return analysed;
  }
  StkFunction* function = application.FindFunction(*options.function);
  if (function == nullptr) {
    return kWrongUsage;
  }
  return Print(application, [&](const AnalysisResult& result, ResultOutput& output) {
    if (options.format == OutputFormat::kJson) {
      WriteExplanationJson(result, *function, output);
    } else {
      WriteExplanation(result, *function, output);
    }
  });
}

}  // namespace velkor
