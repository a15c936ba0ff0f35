#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "core/detail/call_graph.h"

namespace velkor {

// The strongly connected components of a call graph: the largest sets of functions that can all
// reach each other. Numbered from the callees up: every call leads into the caller's own component
// or into one with a smaller number.
//
// A function can reach itself exactly when its component has more than one member or the function
// calls itself. A search along simple paths that leaves out functions already known not to reach
// themselves finds the same functions: a shortest way from a function back to itself is a simple
// path, and everything on it can reach itself by the same way, so nothing on it is ever left out.
struct Components {
  std::vector<uint32_t> of;           // the component of each function
  std::vector<uint32_t> members;      // all functions, component after component
  std::vector<uint32_t> firstMember;  // where each component's begin; one entry more at the end
  std::vector<bool> recursive;        // of each component: its members can reach themselves
  std::vector<uint32_t> order;        // all functions, each where the walk left it
  uint32_t belowStarts = 0;           // how many components the walk closed from the given starts

  uint32_t Count() const { return static_cast<uint32_t>(recursive.size()); }
  std::span<const uint32_t> Members(uint32_t component) const {
    return {members.data() + firstMember[component],
            firstMember[component + 1] - firstMember[component]};
  }
};

// One depth-first walk, from each of the starts in turn and then from every function not yet met,
// by index. Linear in functions and calls; nothing recurses.
Components FindComponents(const CallGraph& graph, std::span<const uint32_t> starts = {});

}  // namespace velkor
