#pragma once

#include <string>

#include "core/function_table.h"
#include "core/recompute.h"
#include "core/root_list.h"

namespace velkor {

enum class InformationMode { kCompare, kNew };

struct AdjustmentInformationResult {
  std::string text;  // what follows "adjusted." in the log; empty when nothing changes
  bool calleesChanged = false;
};

// What adopting the adjustment changes: compared with what is in force, or with nothing.
AdjustmentInformationResult AdjustmentInformation(const StkAdjustment& adjustment,
                                                  const StkFunction& function, InformationMode mode,
                                                  const StkMessages& messages);

// The pending adjustment becomes the one in force. log: post what it changes.
void ApplyPending(StkFunctionTable& table, StkFunction& function, bool log, StkReporter& reporter);

// User-interface thread. Each recomputes the totals and answers whether any callee list changed.
bool AdjustFunction(StkFunctionTable& table, StkRootList& roots, StkFunction& function,
                    const StkAdjustment& adjustment, StkReporter& reporter);
bool CancelAdjustment(StkFunctionTable& table, StkRootList& roots, StkFunction& function,
                      StkReporter& reporter);
bool CancelAllAdjustments(StkFunctionTable& table, StkRootList& roots, StkReporter& reporter);

// Drops the pending recursion depths of functions that are not recursive; those of a user's file
// with W9417 and its stop question.
void CheckRecursionDepths(StkFunctionTable& table, SpecificationSource& source, Event* stopEvent,
                          StkReporter& reporter);

// Whether the function would reach itself if the proposed list were its extra callees.
bool IsRecursiveWith(const StkFunctionTable& table, const StkFunction& function,
                     const StkFunctionList& proposed);

// The three lists of the Function lists dialog.
bool IsSizeUnknown(const StkFunction& function);
bool IsAdjusted(const StkFunction& function);
bool IsSystemLibrary(const StkFunction& function);

}  // namespace velkor
