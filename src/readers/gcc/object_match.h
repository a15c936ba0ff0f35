#pragma once

#include <cstdint>
#include <vector>

#include "readers/gcc/call_graph_file.h"
#include "readers/gcc/object_facts.h"

namespace velkor {

// What the object of a call graph file says beyond it. Nodes, functions and calls by their numbers
// in the two.
struct ObjectMatch {
  static constexpr uint32_t kNone = UINT32_MAX;

  struct HiddenCall {
    uint32_t node;  // none where the code belongs to no node
    uint32_t call;
  };

  std::vector<uint32_t> functionOfNode;  // of defined nodes, where the object has it
  // Calls that no edge explains, and all calls of code without a node.
  std::vector<HiddenCall> hiddenCalls;
  // Functions that have no node, nor an alias that has one: the call graph is another build's, or
  // the compiler wrote them without telling (thunks of C++, assembler within the source).
  std::vector<uint32_t> functionsWithoutNode;
};

// A part of a function that is kept elsewhere (".cold") counts as the function.
ObjectMatch MatchObject(const CallGraphFile& graph, const ObjectFacts& object);

}  // namespace velkor
