#include "cli/change_commands.h"

#include "cli/adjust_form.h"
#include "core/function_text.h"

namespace velkor {
namespace {

bool FillCallees(Application& application, const StkFunction& function, const Options& options,
                 AdjustForm& form) {
  if (options.noCallees || !options.callees.empty()) {
    form.ClearCallees();
  }
  for (const std::string& name : options.callees) {
    StkFunction* callee = application.FindFunction(name);
    if (callee == nullptr) {
      return false;
    }
    if (function.CallsDirectly(*callee)) {
      application.Say(FunctionSpecName(function, application.GetCodePage()) + " calls " +
                      FunctionSpecName(*callee, application.GetCodePage()) +
                      " directly: it cannot be stated once more");
      return false;
    }
    if (!form.AddCallee(*callee)) {
      return false;
    }
  }
  return true;
}

bool FillDepth(Application& application, const StkFunction& function, const Options& options,
               AdjustForm& form) {
  if (!options.depth) {
    return true;
  }
  if (!options.depth->empty() && !form.DepthEnabled()) {
    application.Say(FunctionSpecName(function, application.GetCodePage()) +
                    " is not recursive: it has no recursion depth");
    return false;
  }
  form.SetDepth(*options.depth);
  return true;
}

// False after having said why the form cannot be confirmed.
bool FillForm(Application& application, const StkFunction& function, const Options& options,
              AdjustForm& form) {
  if (options.margin) {
    form.SetMargin(*options.margin);
  }
  return FillCallees(application, function, options, form) &&
         FillDepth(application, function, options, form) && form.Validate();
}

}  // namespace

ExitStatus Adjust(Application& application, const Options& options) {
  const ExitStatus analysed = application.OpenAndAnalyse(options.project);
  if (analysed != kDone) {
    return analysed;
  }
  StkFunction* function = application.FindFunction(*options.function);
  if (function == nullptr) {
    return kWrongUsage;
  }
  CStkDoc& document = application.Document();
  AdjustForm form(*document.FunctionTable(), *function, application.Reporter());
  if (!FillForm(application, *function, options, form)) {
    return kWrongUsage;
  }
  if (const std::optional<StkAdjustment> adjustment = form.Build()) {
    document.AdjustFunction(*function, *adjustment);
  } else if (function->adjustment != nullptr) {
    document.CancelAdjustment(*function);
  }
  return application.RunWritingJob();
}

ExitStatus Reset(Application& application, const Options& options) {
  const ExitStatus analysed = application.OpenAndAnalyse(options.project);
  if (analysed != kDone) {
    return analysed;
  }
  CStkDoc& document = application.Document();
  if (options.all) {
    if (document.FunctionTable()->AdjustedCount() != 0) {
      document.CancelAllAdjustments();
    }
    return application.RunWritingJob();
  }
  StkFunction* function = application.FindFunction(*options.function);
  if (function == nullptr) {
    return kWrongUsage;
  }
  if (function->adjustment != nullptr) {
    document.CancelAdjustment(*function);
  }
  return application.RunWritingJob();
}

ExitStatus Load(Application& application, const Options& options) {
  const ExitStatus analysed = application.OpenAndAnalyse(options.project);
  if (analysed != kDone) {
    return analysed;
  }
  const std::string& file = options.loadFiles.front();
  if (!application.Document().LoadSpecFile(application.AbsolutePath(file))) {
    application.Say(file + " is not read: the project has no functions");
    return kNotEverythingRead;
  }
  return application.RunJobs() ? application.FinishedStatus() : kStopped;
}

}  // namespace velkor
