#pragma once

#include <cstdint>
#include <vector>

#include "core/call_graph.h"
#include "core/components.h"

namespace velkor {

// Which functions are top-level, in table order by index.
//
// A function that nothing calls is. A recursive one that something calls is when every other
// function that can reach it is recursive and carries no FN_ROOT: the functions before it in the
// table as they have just been decided, those after it as they were marked the previous time.
// So of a closed cycle one function is chosen. marked: the previous ones, by index, ascending.
// Linear in functions and calls.
std::vector<bool> DecideTopLevel(const CallGraph& graph, const Components& components,
                                 const std::vector<uint32_t>& marked);

}  // namespace velkor
