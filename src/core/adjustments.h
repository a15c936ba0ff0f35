#pragma once

#include "core/function_table.h"
#include "core/root_list.h"
#include "messages/reporter.h"

namespace velkor {

// User-interface thread. Each recomputes the totals and answers whether any callee list changed.
bool AdjustFunction(StkFunctionTable& table, StkRootList& roots, StkFunction& function,
                    const StkAdjustment& adjustment, StkReporter& reporter);
bool CancelAdjustment(StkFunctionTable& table, StkRootList& roots, StkFunction& function,
                      StkReporter& reporter);
bool CancelAllAdjustments(StkFunctionTable& table, StkRootList& roots, StkReporter& reporter);

// Whether the function would reach itself if the proposed list were its extra callees.
bool IsRecursiveWith(const StkFunctionTable& table, const StkFunction& function,
                     const StkFunctionList& proposed);

// The three lists of the Function lists dialog.
bool IsSizeUnknown(const StkFunction& function);
bool IsAdjusted(const StkFunction& function);
bool IsSystemLibrary(const StkFunction& function);

}  // namespace velkor
