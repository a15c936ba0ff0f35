#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "readers/gcc/call_graph_node.h"

namespace velkor {

// "FILE:LINE:COLUMN", whose file may hold colons.
SourcePlace ReadSourcePlace(std::string_view text);

// Sets what the label of a node tells: name, place, frame and dynamic objects, which are added to
// objects. False where a part of it has no known form or the count of objects is wrong.
bool ReadNodeLabel(std::string_view label, CallGraphNode& node,
                   std::vector<DynamicObject>& objects);

}  // namespace velkor
