#include "cli/change_commands.h"

#include <algorithm>
#include <optional>

#include "core/function_text.h"
#include "document/adjustment_form.h"

namespace velkor::cli {
namespace {

bool AddCallee(Application& application, const StkFunction& function, StkFunction& callee,
               AdjustmentForm& form) {
  if (function.CallsDirectly(callee)) {
    application.Say(FunctionSpecName(function, application.GetCodePage()) + " calls " +
                    FunctionSpecName(callee, application.GetCodePage()) +
                    " directly: it cannot be stated once more");
    return false;
  }
  if (form.IsFull() && form.CanAdd(callee)) {
    application.Reporter().ShowWarning(MessageKey::kW9460, {});
    return false;
  }
  form.Add(callee);
  return true;
}

bool FillCallees(Application& application, const StkFunction& function, const Options& options,
                 AdjustmentForm& form) {
  if (options.noCallees || !options.callees.empty()) {
    form.DeleteAll();
  }
  return std::all_of(options.callees.begin(), options.callees.end(), [&](const std::string& name) {
    StkFunction* callee = application.FindFunction(name);
    return callee != nullptr && AddCallee(application, function, *callee, form);
  });
}

bool FillDepth(Application& application, const StkFunction& function, const Options& options,
               AdjustmentForm& form) {
  if (!options.depth) {
    return true;
  }
  if (!options.depth->empty() && !form.RecursionEnabled()) {
    application.Say(FunctionSpecName(function, application.GetCodePage()) +
                    " is not recursive: it has no recursion depth");
    return false;
  }
  form.SetDepthText(*options.depth);
  return true;
}

// False after having said why the form cannot be confirmed.
bool FillForm(Application& application, const StkFunction& function, const Options& options,
              AdjustmentForm& form) {
  if (options.margin) {
    form.SetMarginText(*options.margin);
  }
  if (!FillCallees(application, function, options, form) ||
      !FillDepth(application, function, options, form)) {
    return false;
  }
  const std::optional<AdjustmentForm::Refusal> refusal = form.Validate();
  if (refusal) {
    ShowRefusal(*refusal, application.Reporter());
  }
  return !refusal;
}

void NoteReplacedSize(Application& application, const StkFunction& function, uint32_t margin) {
  if (!function.Is(FN_LIBRARY) || margin == kNoMargin || margin == function.librarySize) {
    return;
  }
  StkReporter& reporter = application.Reporter();
  const std::string name = FunctionSpecName(function, application.GetCodePage());
  reporter.PostNote({.rule = "margin-replaces-size",
                     .text = reporter.Messages().FormatMessageText(
                         MessageKey::kNoteMarginReplacesSize, {margin, name, function.librarySize}),
                     .file = {},
                     .line = 0,
                     .function = function.index});
}

// False after having said why what is stated of a function (none: of all) cannot be kept.
bool CanState(Application& application, const StkFunction* function) {
  CStkDoc& document = application.Document();
  return document.CanKeepAdjustments() && (function == nullptr || document.CanStateHere(*function));
}

}  // namespace

ExitStatus Adjust(Application& application, const Options& options) {
  const ExitStatus analysed = application.OpenAndAnalyse(options);
  if (analysed != kDone) {
    return analysed;
  }
  StkFunction* function = application.FindFunction(*options.function);
  if (function == nullptr) {
    return application.NotFoundStatus();
  }
  CStkDoc& document = application.Document();
  if (!CanState(application, function)) {
    return kWrongUsage;
  }
  AdjustmentForm form(*document.FunctionTable(), *function);
  if (!FillForm(application, *function, options, form)) {
    return kWrongUsage;
  }
  if (const std::optional<StkAdjustment> adjustment = form.BuildAdjustment()) {
    NoteReplacedSize(application, *function, adjustment->margin);
    document.AdjustFunction(*function, *adjustment);
  } else if (function->HasStatement()) {
    document.CancelAdjustment(*function);
  }
  return application.RunWritingJob();
}

ExitStatus Reset(Application& application, const Options& options) {
  const ExitStatus analysed = application.OpenAndAnalyse(options);
  if (analysed != kDone) {
    return analysed;
  }
  CStkDoc& document = application.Document();
  if (!CanState(application, nullptr)) {
    return kWrongUsage;
  }
  if (options.all) {
    document.CancelAllAdjustments();
    return application.RunWritingJob();
  }
  StkFunction* function = application.FindFunction(*options.function);
  if (function == nullptr) {
    return application.NotFoundStatus();
  }
  if (!CanState(application, function)) {
    return kWrongUsage;
  }
  if (document.HasStatement(*function)) {
    document.CancelAdjustment(*function);
  }
  return application.RunWritingJob();
}

ExitStatus Load(Application& application, const Options& options) {
  const std::string file = application.InputPath(options.specification);
  if (options.specification != "-" && !application.GetHost().files.Exists(file)) {
    application.Reporter().ShowWarning(MessageKey::kW9400, {MessageFile{file}});
    return kProjectNotRead;
  }
  const ExitStatus analysed = application.OpenAndAnalyse(options);
  if (analysed != kDone) {
    return analysed;
  }
  if (!CanState(application, nullptr)) {
    return kWrongUsage;
  }
  const ExitStatus loaded = application.LoadSpecification(options.specification, true);
  return loaded == kStopped ? kStopped : application.RunWritingJob();
}

}  // namespace velkor::cli
