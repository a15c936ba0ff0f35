#include "cli/output_commands.h"

#include "cli/command_output.h"
#include "core/statement_plan.h"
#include "files/chain_report.h"
#include "files/spec_names.h"
#include "platform/terminal.h"
#include "reports/gate/input_gate.h"
#include "reports/page_output.h"
#include "reports/terminal_text.h"
#include "reports/todo_output.h"

namespace velkor::cli {

namespace {

void WriteTodo(Application& application, reports::ResultOutput& output) {
  const StkFunctionTable& functions = *application.Document().FunctionTable();
  const StkBounds& bounds = *application.Document().Bounds();
  reports::WriteTodo(functions, bounds, PlanStatements(functions, bounds), output);
}

// As a terminal bears it. A file holds the bytes of the project.
void ShowTodo(Application& application, reports::ResultOutput& output) {
  std::string text;
  reports::ResultOutput whole([&text](std::string_view part) {
    text += part;
    return true;
  });
  WriteTodo(application, whole);
  whole.Finish();
  for (size_t start = 0; start < text.size();) {
    const size_t end = text.find('\n', start);
    const std::string line = text.substr(start, end - start);
    output.Write(reports::OneLine(application.GetCodePage().ToUtf8(line)) + "\n");
    start = end + 1;
  }
}

}  // namespace

ExitStatus Todo(Application& application, const Options& options) {
  const ExitStatus analysed = application.OpenAndAnalyse(options);
  if (analysed != kDone) {
    return analysed;
  }
  return WriteResult(application, options.output, [&](reports::ResultOutput& output) {
    if (GoesToStandardOutput(options.output) && IsOutputTerminal()) {
      ShowTodo(application, output);
    } else {
      WriteTodo(application, output);
    }
  });
}

ExitStatus Report(Application& application, const Options& options) {
  const ExitStatus analysed = application.OpenAndAnalyse(options);
  if (analysed != kDone) {
    return analysed;
  }
  return WriteResult(application, options.output, [&](reports::ResultOutput& output) {
    const reports::AnalysisResult result = application.Result();
    const StkFunctionTable& functions = *application.Document().FunctionTable();
    reports::InputGate gate(*application.Document().Input(), functions, result,
                            application.GetHost());
    reports::WritePage(result, PlanStatements(functions, *application.Document().Bounds()),
                       gate.Stacks(), output);
  });
}

ExitStatus Chains(Application& application, const Options& options) {
  const ExitStatus analysed = application.OpenAndAnalyse(options);
  if (analysed != kDone) {
    return analysed;
  }
  const StkFunction* function = application.FindFunction(*options.function);
  if (function == nullptr) {
    return application.NotFoundStatus();
  }
  const std::string output = application.OutputPath(options.output);
  application.Document().SaveCallChains(
      output, *function, options.all, StkChainReport::FormatOf(output, application.GetCodePage()));
  return application.RunWritingJob();
}

ExitStatus Names(Application& application, const Options& options) {
  const ExitStatus analysed = application.OpenAndAnalyse(options);
  if (analysed != kDone) {
    return analysed;
  }
  return WriteResult(application, "", [&](reports::ResultOutput& output) {
    const StkFunctionTable& functions = *application.Document().FunctionTable();
    SpecNames names(functions);
    for (const StkFunction* function : functions.Functions()) {
      if (const std::optional<std::string> name = names.Statement(*function)) {
        output.Write(reports::OneLine(application.GetCodePage().ToUtf8(*name)) + "\n");
      }
    }
  });
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
  document.SaveSpecFile(application.OutputPath(options.output));
  return application.RunWritingJob();
}

}  // namespace velkor::cli
