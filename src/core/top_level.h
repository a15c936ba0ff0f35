#pragma once

#include <vector>

#include "core/call_graph.h"
#include "core/components.h"
#include "core/function_table.h"

namespace velkor {

// Which functions are top-level, in table order by index.
//
// A function that nothing calls is. A recursive one that something calls is when every other
// function that can reach it is recursive and carries no FN_ROOT: the functions before it in the
// table as they have just been decided, those after it as their flags still say (from the
// previous time). So of a closed cycle one function is chosen. Reads FN_ROOT and changes no flag.
// Linear in functions and calls.
std::vector<bool> DecideTopLevel(const StkFunctionTable& table, const CallGraph& graph,
                                 const Components& components);

}  // namespace velkor
