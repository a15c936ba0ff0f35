#include "cli/output_commands.h"

#include "files/chain_report.h"

namespace velkor::cli {

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
