#pragma once

#include <vector>

#include "core/function_table.h"

namespace velkor {

// For each function of the table, by index: whether its total is certain, that is whether
// IsSizeUnknown holds neither for it nor for any function it can reach through callees and extra
// callees. Where it is false, the total is a lower bound. Linear in functions and calls.
std::vector<bool> CompleteFunctions(const StkFunctionTable& table);

}  // namespace velkor
