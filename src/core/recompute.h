#pragma once

#include "core/function_table.h"
#include "core/root_list.h"
#include "core/specification_source.h"
#include "messages/reporter.h"
#include "platform/event.h"

namespace velkor {

// Recursion marks, top-level functions and the total stack size of every function.
//
// rebuild: the callee lists have changed, or pending adjustments bring some. The graph's derived
// data is also rebuilt when the root list is empty; otherwise every function keeps its extra
// callees, and the callee lists of pending adjustments are not used.
// source: whose pending adjustments are applied, or none; with a source, the depths of pending
// adjustments are checked first (CheckRecursionDepths). stopEvent is handed to its stop question
// and not watched otherwise: a computation runs to its end. Every pending adjustment becomes the
// one in force.
// Linear in functions and calls. Runs in the job's thread or the user-interface thread.
void Recompute(StkFunctionTable& table, StkRootList& roots, bool rebuild,
               SpecificationSource* source, Event* stopEvent, StkReporter& reporter);

}  // namespace velkor
