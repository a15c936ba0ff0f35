#include "cli/output_commands.h"

namespace velkor {

ExitStatus Save(Application& application, const Options& options) {
  const ExitStatus analysed = application.OpenAndAnalyse(options.project);
  if (analysed != kDone) {
    return analysed;
  }
  CStkDoc& document = application.Document();
  const StkFunctionTable& functions = *document.FunctionTable();
  if (functions.UnknownCount() == 0 && functions.AdjustedCount() == 0) {
    application.Say("nothing to save: no function is unknown or adjusted");
    return application.FinishedStatus();
  }
  document.SaveSpecFile(application.AbsolutePath(options.output));
  return application.RunWritingJob();
}

}  // namespace velkor
