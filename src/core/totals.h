#pragma once

#include <cstdint>

#include "core/call_graph.h"
#include "core/computation_order.h"
#include "core/function_table.h"

namespace velkor {

// Total, largest callee total and chain count of every function in the order, which are computed in
// that order. Pending adjustments are used but stay pending. Answers the functions that have one,
// in the order in which they were computed. graph: the calls of the table.
StkFunctionList ComputeTotals(const StkFunctionTable& table, const CallGraph& graph,
                              const ComputationOrder& order);

// Does and answers the same, provided that the results were those of this order before the touched
// functions changed in what they add themselves: goes from these up through the callers, as far
// as results change. overRoots: how many top-level functions are over the limit; kept up to date.
StkFunctionList UpdateTotals(const StkFunctionTable& table, const ComputationOrder& order,
                             const StkFunctionList& touched, uint32_t& overRoots);

}  // namespace velkor
