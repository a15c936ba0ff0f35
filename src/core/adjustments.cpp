#include "core/adjustments.h"

#include <utility>

#include "core/adjustment_information.h"
#include "core/call_range.h"
#include "core/detail/report_overflow.h"
#include "core/function_text.h"
#include "core/recompute.h"

namespace velkor {

namespace {

// Whether the function had extra callees.
bool Cancel(StkFunctionTable& table, StkFunction& function, StkReporter& reporter) {
  const bool hadCallees = !function.extraCallees.empty();
  table.TakeAdjustmentAway(function);
  table.SetDirectCallees(function, {});
  function.extraCallees.clear();
  const std::string name = FunctionSpecName(function, reporter.Messages().GetCodePage());
  reporter.LogMessage(MessageKey::kSpecificationCanceled, {name});
  return hadCallees;
}

}  // namespace

bool AdjustFunction(StkFunctionTable& table, StkRootList& roots, StkFunction& function,
                    const StkAdjustment& adjustment, StkReporter& reporter) {
  const AdjustmentInformationResult information =
      AdjustmentInformation(adjustment, function, InformationMode::kCompare, reporter.Messages());
  const bool onlyDirectCallees = adjustment.margin == kNoMargin && adjustment.depth == kNoDepth &&
                                 adjustment.callees.value_or(StkFunctionList()).empty() &&
                                 !adjustment.directCallees.empty();
  if (onlyDirectCallees) {
    table.TakeAdjustmentAway(function);
  } else {
    table.PutInForce(function, {adjustment.margin, adjustment.depth});
  }
  table.SetDirectCallees(function, adjustment.directCallees);
  StkFunctionList callees = adjustment.callees.value_or(StkFunctionList());
  if (callees != function.extraCallees) {
    function.extraCallees = std::move(callees);
    table.NoteRearrangedCallees();
  }
  const std::string name = FunctionSpecName(function, table.GetCodePage());
  if (!information.text.empty()) {
    reporter.LogMessage(MessageKey::kSpecificationAdjusted, {name, information.text});
  }
  Recompute(table, roots, information.calleesChanged, nullptr, nullptr, reporter);
  if (table.Overflow()) {
    ReportOverflow(table, function, name, reporter);
  }
  return information.calleesChanged;
}

bool CancelAdjustment(StkFunctionTable& table, StkRootList& roots, StkFunction& function,
                      StkReporter& reporter) {
  if (!function.HasStatement()) {
    return false;
  }
  const bool changed = Cancel(table, function, reporter);
  Recompute(table, roots, changed, nullptr, nullptr, reporter);
  return changed;
}

bool CancelAllAdjustments(StkFunctionTable& table, StkRootList& roots, StkReporter& reporter) {
  if (table.CountForSpecFile(false) == 0) {
    return false;
  }
  bool changed = false;
  for (StkFunction* function : table.Functions()) {
    if (function->HasStatement() && table.Brought(*function) == nullptr) {
      changed = Cancel(table, *function, reporter) || changed;
    }
  }
  Recompute(table, roots, changed, nullptr, nullptr, reporter);
  return changed;
}

// The proposed list leaves only from the function itself, so the question is whether the present
// calls lead from its callees or the proposed functions back to it. Leaving out functions that
// are known not to reach themselves now changes nothing, as long as they come before the function
// in an order of callees before callers: such a function that led to this one would have been
// placed after it, unless both can already reach each other, and then it is not left out.
bool IsRecursiveWith(const StkFunctionTable& table, const StkFunction& function,
                     const StkFunctionList& proposed) {
  std::vector<bool> met(table.Count(), false);
  std::vector<const StkFunction*> waiting;
  const auto meet = [&](CallRange calls) {
    for (const StkFunction* callee : calls) {
      if (!met[callee->index]) {
        met[callee->index] = true;
        waiting.push_back(callee);
      }
    }
  };
  meet(CallRange(function.callees, proposed));
  while (!waiting.empty() && !met[function.index]) {
    const StkFunction& reached = *waiting.back();
    waiting.pop_back();
    meet(AllCallees(reached));
  }
  return met[function.index];
}

bool IsSizeUnknown(const StkFunction& function) {
  return function.adjustment == nullptr && !function.Is(FN_LIBRARY) &&
         (!function.Is(FN_DEFINED) || function.Is(FN_RECURSIVE | FN_INDIRECT_CALL));
}

bool IsAdjusted(const StkFunction& function) {
  return function.adjustment != nullptr;
}

bool IsSystemLibrary(const StkFunction& function) {
  return function.Is(FN_LIBRARY) && function.adjustment == nullptr;
}

}  // namespace velkor
