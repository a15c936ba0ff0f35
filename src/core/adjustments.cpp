#include "core/adjustments.h"

#include <string>
#include <utility>
#include <vector>

#include "core/adjustment_information.h"
#include "core/call_range.h"
#include "core/detail/callee_update.h"
#include "core/detail/report_overflow.h"
#include "core/function_text.h"
#include "core/recompute.h"

namespace velkor {

namespace {

using CalleeChanges = std::vector<CalleeChange>;

void SetExtraCallees(StkFunction& function, StkFunctionList callees, CalleeChanges& changes) {
  if (callees != function.extraCallees) {
    changes.push_back({&function, std::exchange(function.extraCallees, std::move(callees))});
  }
}

// rebuild: other functions are called than before.
void RecomputeAfter(const CalleeChanges& changes, bool rebuild, StkFunctionTable& table,
                    StkRootList& roots, StkReporter& reporter) {
  const bool isFollowed = CalleeUpdate(table, roots).Follow(changes);
  if (!changes.empty() && !isFollowed) {
    table.NoteRearrangedCallees();
  }
  Recompute(table, roots, rebuild && !isFollowed, nullptr, nullptr, reporter);
}

// Whether the function had extra callees.
bool Cancel(StkFunctionTable& table, StkFunction& function, CalleeChanges& changes,
            StkReporter& reporter) {
  const bool hadCallees = !function.extraCallees.empty();
  table.TakeAdjustmentAway(function);
  table.SetDirectCallees(function, {});
  SetExtraCallees(function, {}, changes);
  const std::string name = FunctionSpecName(function, reporter.Messages().GetCodePage());
  reporter.LogMessage(MessageKey::kSpecificationCanceled, {name});
  return hadCallees;
}

// What the adjustment changes, after having put it in force.
AdjustmentInformationResult Put(StkFunctionTable& table, StkFunction& function,
                                const StkAdjustment& adjustment, CalleeChanges& changes,
                                StkReporter& reporter) {
  AdjustmentInformationResult information =
      AdjustmentInformation(adjustment, function, InformationMode::kCompare, reporter.Messages());
  if (adjustment.Adjusts() || adjustment.directCallees.empty()) {
    table.PutInForce(function, {adjustment.margin, adjustment.depth});
  } else {
    table.TakeAdjustmentAway(function);
  }
  table.SetDirectCallees(function, adjustment.directCallees);
  SetExtraCallees(function, adjustment.callees.value_or(StkFunctionList()), changes);
  if (!information.text.empty()) {
    const std::string name = FunctionSpecName(function, table.GetCodePage());
    reporter.LogMessage(MessageKey::kSpecificationAdjusted, {name, information.text});
  }
  return information;
}

// What is stated of a function holds for its clones. Whether a callee list has changed.
bool PutForClones(StkFunctionTable& table, const StkFunction& base, const StkAdjustment& adjustment,
                  CalleeChanges& changes, StkReporter& reporter) {
  bool changed = false;
  for (StkFunction* clone : table.Clones().Of(base)) {
    StkAdjustment stated = AdjustmentFor(*clone, adjustment, table.GetCodePage());
    if (table.KeptOfClone(*clone).isOwn) {
      continue;
    }
    if (table.Brought(*clone) != nullptr) {
      table.KeepUnderBrought(*clone, stated, {});
      continue;
    }
    if (stated.depth != kNoDepth && !IsRecursiveWith(table, *clone, *stated.callees)) {
      stated.depth = kNoDepth;
    }
    changed = Put(table, *clone, stated, changes, reporter).calleesChanged || changed;
  }
  return changed;
}

bool CancelOfClones(StkFunctionTable& table, const StkFunction& base, CalleeChanges& changes,
                    StkReporter& reporter) {
  bool changed = false;
  for (StkFunction* clone : table.Clones().Of(base)) {
    if (table.KeptOfClone(*clone).isOwn) {
      continue;
    }
    if (table.Brought(*clone) != nullptr) {
      table.KeepUnderBrought(*clone, {}, {});
    } else if (clone->HasStatement()) {
      changed = Cancel(table, *clone, changes, reporter) || changed;
    }
  }
  return changed;
}

// From now on the clone has its own.
void SetOwn(StkFunctionTable& table, const StkFunction& clone) {
  CloneStatement statement = table.Clones().Statement(clone);
  statement.isOwn = true;
  table.Clones().SetStatement(clone, std::move(statement));
}

// A clone without a statement has what its base has, where that is none either.
void ForgetOwn(StkFunctionTable& table, const StkFunction& clone) {
  const StkFunction* base = table.Clones().BaseOf(clone);
  if (base != nullptr && table.Kept(*base).None()) {
    table.Clones().SetStatement(clone, {});
  }
}

}  // namespace

bool AdjustFunction(StkFunctionTable& table, StkRootList& roots, StkFunction& function,
                    const StkAdjustment& adjustment, StkReporter& reporter) {
  const bool newDirect = table.DirectCallees(function) != adjustment.directCallees;
  const bool wasStated = function.HasStatement();
  CalleeChanges changes;
  const AdjustmentInformationResult information =
      Put(table, function, adjustment, changes, reporter);
  if (function.Is(FN_CLONE) && (!information.text.empty() || newDirect || !wasStated)) {
    SetOwn(table, function);
  }
  const bool changed =
      PutForClones(table, function, adjustment, changes, reporter) || information.calleesChanged;
  RecomputeAfter(changes, changed, table, roots, reporter);
  if (table.Overflow()) {
    ReportOverflow(table, function, FunctionSpecName(function, table.GetCodePage()), reporter);
  }
  return changed;
}

bool CancelAdjustment(StkFunctionTable& table, StkRootList& roots, StkFunction& function,
                      StkReporter& reporter) {
  if (!function.HasStatement()) {
    return false;
  }
  CalleeChanges changes;
  bool changed = Cancel(table, function, changes, reporter);
  changed = CancelOfClones(table, function, changes, reporter) || changed;
  if (function.Is(FN_CLONE)) {
    SetOwn(table, function);
    ForgetOwn(table, function);
  }
  RecomputeAfter(changes, changed, table, roots, reporter);
  return changed;
}

bool CancelAllAdjustments(StkFunctionTable& table, StkRootList& roots, StkReporter& reporter) {
  if (table.CountForSpecFile(false) == 0) {
    return false;
  }
  CalleeChanges changes;
  bool changed = false;
  for (StkFunction* function : table.Functions()) {
    if (table.Brought(*function) != nullptr) {
      continue;
    }
    if (function->HasStatement()) {
      changed = Cancel(table, *function, changes, reporter) || changed;
    }
    changed = CancelOfClones(table, *function, changes, reporter) || changed;
    if (function->Is(FN_CLONE)) {
      table.Clones().SetStatement(*function, {});
    }
  }
  RecomputeAfter(changes, changed, table, roots, reporter);
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
