#include "cli/analyze_command.h"

#include <cstdio>

#include "cli/csv_output.h"
#include "cli/json_output.h"
#include "cli/text_output.h"
#include "core/completeness.h"

namespace velkor {
namespace {

AnalysisResult ResultOf(Application& application) {
  CStkDoc& document = application.Document();
  const ProgramInput& input = *document.Input();
  const StkFunctionTable& functions = *document.FunctionTable();
  return {application.GetCodePage(),          document.PathName(),
          std::string(input.GeneratorName()), input.GeneratorVersion(),
          application.Log().Messages(),       functions,
          document.RootList()->Functions(),   CompleteFunctions(functions)};
}

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

// kNotEverythingRead: some file had nothing to apply to.
ExitStatus LoadFiles(Application& application, const Options& options) {
  ExitStatus status = kDone;
  for (const std::string& file : options.loadFiles) {
    if (!application.Document().LoadSpecFile(application.AbsolutePath(file), false)) {
      application.Say(application.Typed(file) + " is not read: the project has no functions");
      status = kNotEverythingRead;
    }
    if (!application.RunJobs()) {
      return kStopped;
    }
  }
  return status;
}

}  // namespace

ExitStatus Analyze(Application& application, const Options& options) {
  const ExitStatus analysed = application.OpenAndAnalyse(options.project);
  if (analysed != kDone) {
    return analysed;
  }
  const ExitStatus loaded = LoadFiles(application, options);
  if (loaded == kStopped) {
    return kStopped;
  }
  application.StopCatchingInterrupts();
  ResultOutput output(stdout);
  WriteResult(ResultOf(application), options, output);
  if (!output.Finish()) {
    application.Say("cannot write to standard output: " + output.Failure());
    return kOutputFailed;
  }
  return loaded == kDone ? application.FinishedStatus() : loaded;
}

}  // namespace velkor
