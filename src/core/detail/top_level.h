#pragma once

#include <cstdint>
#include <vector>

#include "core/detail/call_graph.h"
#include "core/detail/components.h"

namespace velkor {

// Which functions are top-level, by index, ascending.
//
// A function that nothing calls is. A recursive one that something calls is when every other
// function that can reach it is recursive and carries no FN_ROOT: the functions before it in the
// table as they have just been decided, those after it as they were marked the previous time.
// So of a closed cycle one function is chosen.
//
// uncalled: the functions that nothing calls, which the components were found from; marked: the
// previous top-level functions; both ascending. Linear in functions and calls.
std::vector<uint32_t> DecideTopLevel(const CallGraph& graph, const Components& components,
                                     const std::vector<uint32_t>& uncalled,
                                     const std::vector<uint32_t>& marked);

}  // namespace velkor
