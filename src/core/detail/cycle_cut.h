#pragma once

#include <cstdint>
#include <vector>

#include "core/detail/call_graph.h"

namespace velkor {

// A small set of functions that every cycle of the graph passes, ascending.
//
// Of a component (functions that can all reach each other) of up to SmallestCut::kMost functions
// none is smaller, and of the smallest ones it holds the most preferred functions. Of a larger one
// it is what remains when functions that cannot matter are contracted and, where none is left, the
// one with the most ways through it is taken (of more than 65536 functions, those that a walk along
// the calls comes back to); then each function that is not needed is put back, as long as that is
// done with a fixed effort. The same for the same graph; nothing recurses.
// Linear in functions and calls but for a logarithm, and for the fixed effort.
std::vector<uint32_t> FindCycleCut(const CallGraph& graph, const std::vector<bool>& preferred);

}  // namespace velkor
