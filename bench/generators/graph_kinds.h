#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "bench/generators/call_graph.h"

namespace velkor::bench {

// A shape of call graph that is hard on some way of walking it.
struct GraphKind {
  std::string_view name;
  std::string_view size;  // what its size counts
  CallGraph (*make)(uint32_t size, uint64_t seed);
};

std::span<const GraphKind> GraphKinds();

}  // namespace velkor::bench
