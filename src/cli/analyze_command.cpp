#include "cli/analyze_command.h"

#include "cli/command_output.h"
#include "reports/csv_output.h"
#include "reports/explanation_output.h"
#include "reports/json_output.h"
#include "reports/text_output.h"

namespace velkor::cli {
namespace {

void WriteAnalysis(const reports::AnalysisResult& result, const Options& options,
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

}  // namespace

ExitStatus Analyze(Application& application, const Options& options) {
  const ExitStatus analysed = application.OpenAndAnalyse(options);
  if (analysed != kDone) {
    return analysed;
  }
  return WriteResult(application, options.output, [&](reports::ResultOutput& output) {
    WriteAnalysis(application.Result(), options, output);
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
  return WriteResult(application, options.output, [&](reports::ResultOutput& output) {
    const reports::AnalysisResult result = application.Result();
    if (options.format == OutputFormat::kJson) {
      reports::WriteExplanationJson(result, function->index, output);
    } else {
      reports::WriteExplanation(result, function->index, output);
    }
  });
}

}  // namespace velkor::cli
