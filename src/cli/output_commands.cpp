#include "cli/output_commands.h"

#include "cli/command_output.h"
#include "core/statement_plan.h"
#include "files/chain_report.h"
#include "reports/page_output.h"
#include "reports/todo_output.h"

namespace velkor::cli {

ExitStatus Todo(Application& application, const Options& options) {
  const ExitStatus analysed = application.OpenAndAnalyse(options);
  if (analysed != kDone) {
    return analysed;
  }
  return WriteResult(application, options.output, [&](reports::ResultOutput& output) {
    const StkFunctionTable& functions = *application.Document().FunctionTable();
    const StkBounds& bounds = *application.Document().Bounds();
    reports::WriteTodo(functions, bounds, PlanStatements(functions, bounds), output);
  });
}

ExitStatus Report(Application& application, const Options& options) {
  const ExitStatus analysed = application.OpenAndAnalyse(options);
  if (analysed != kDone) {
    return analysed;
  }
  return WriteResult(application, options.output, [&](reports::ResultOutput& output) {
    reports::WritePage(
        application.Result(),
        PlanStatements(*application.Document().FunctionTable(), *application.Document().Bounds()),
        output);
  });
}

ExitStatus Chains(Application& application, const Options& options) {
  const ExitStatus analysed = application.OpenAndAnalyse(options);
  if (analysed != kDone) {
    return analysed;
  }
  const StkFunction* function = application.FindFunction(*options.function);
  if (function == nullptr) {
    return kWrongUsage;
  }
  const std::string output = application.AbsolutePath(options.output);
  application.Document().SaveCallChains(
      output, *function, options.all, StkChainReport::FormatOf(output, application.GetCodePage()));
  return application.RunWritingJob();
}

ExitStatus Save(Application& application, const Options& options) {
  const ExitStatus analysed = application.OpenAndAnalyse(options);
  if (analysed != kDone) {
    return analysed;
  }
  CStkDoc& document = application.Document();
  const StkFunctionTable& functions = *document.FunctionTable();
  if (functions.UnknownCount() == 0 && functions.AdjustedCount() == 0) {
    application.Say("nothing to save: no function is unknown or adjusted");
    application.SayNotes();
    return application.FinishedStatus();
  }
  document.SaveSpecFile(application.AbsolutePath(options.output));
  return application.RunWritingJob();
}

}  // namespace velkor::cli
