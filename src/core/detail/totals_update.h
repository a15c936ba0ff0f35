#pragma once

#include <cstdint>

#include "core/detail/computation_order.h"
#include "core/function_table.h"

namespace velkor {

// Does and answers the same as ComputeTotals, provided that the results were those of this order
// before the touched functions changed in what they add themselves: goes from these up through the
// callers, as far as results change. overRoots: how many top-level functions are over the limit;
// kept up to date.
StkFunctionList UpdateTotals(const StkFunctionTable& table, const ComputationOrder& order,
                             const StkFunctionList& touched, uint32_t& overRoots);

}  // namespace velkor
