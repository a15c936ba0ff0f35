#pragma once

#include <cstdint>

#include "core/detail/call_graph.h"
#include "core/detail/computation_order.h"
#include "core/function_table.h"

namespace velkor {

// Total, largest callee total and chain count of every function in the order, which are computed in
// that order. Pending adjustments are used but stay pending. Answers the functions that have one,
// in the order in which they were computed. graph: the calls of the table.
StkFunctionList ComputeTotals(const StkFunctionTable& table, const CallGraph& graph,
                              const ComputationOrder& order);

}  // namespace velkor
