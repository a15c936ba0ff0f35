#include "core/detail/pending_adjustments.h"

#include <set>
#include <string>

#include "core/adjustment_information.h"
#include "core/function_text.h"

namespace velkor {

void ApplyPending(StkFunctionTable& table, StkFunction& function, bool log, StkReporter& reporter) {
  if (function.pendingAdjustment == nullptr) {
    return;
  }
  const StkAdjustment& pending = *function.pendingAdjustment;
  if (log) {
    const std::string text =
        AdjustmentInformation(pending, function, InformationMode::kNew, reporter.Messages()).text;
    if (!text.empty()) {
      const std::string name = FunctionSpecName(function, reporter.Messages().GetCodePage());
      reporter.PostLog(MessageKey::kSpecificationAdjusted, {name, text});
    }
  }
  table.PutPendingInForce(function);
}

// A line that holds for clones too is wrong only where none of its functions is recursive.
void CheckRecursionDepths(StkFunctionTable& table, SpecificationSource& source, Event* stopEvent,
                          StkReporter& reporter) {
  const bool ask = source.Kind() == SpecificationKind::kUserFile;
  Event neverStopped{Event::Reset::kManual};
  StopAnswer answer = source.Answer();
  std::set<uint32_t> settled;  // lines
  StkFunctionList wrong;
  for (StkFunction* function : table.Functions()) {
    const StkAdjustment* pending = function->pendingAdjustment.get();
    if (pending == nullptr || pending->depth == kNoDepth) {
      continue;
    }
    if (function->Is(FN_RECURSIVE)) {
      settled.insert(pending->line);
    } else {
      wrong.push_back(function);
    }
  }
  for (StkFunction* function : wrong) {
    StkAdjustment& pending = *function->pendingAdjustment;
    if (ask && settled.insert(pending.line).second) {
      answer = reporter.AskStopReading(
          stopEvent != nullptr ? *stopEvent : neverStopped, answer,
          reporter.Messages().MakeMessage(MessageKey::kW9417,
                                          {MessageFile{source.Path()}, MessageLine{pending.line}}));
    }
    pending.depth = kNoDepth;
  }
}

}  // namespace velkor
