#include "bench/generators/graph_kinds.h"

#include <algorithm>
#include <cmath>

#include "bench/generators/random.h"

namespace velkor::bench {
namespace {

constexpr uint32_t kCallsPerFunction = 4;
constexpr uint32_t kFunctionsPerRing = 10;

// Calls of any function by any other: most functions end up in one recursion.
CallGraph MakeRandom(uint32_t size, uint64_t seed) {
  Random random(seed);
  CallGraph graph;
  for (uint32_t function = 0; function < size; ++function) {
    graph.AddFunction();
    for (uint32_t call = 0; call < kCallsPerFunction; ++call) {
      graph.AddCall(random.Below(size));
    }
  }
  return graph;
}

// As many layers as functions in each; every function calls some of the next layer.
CallGraph MakeLayered(uint32_t size, uint64_t seed) {
  Random random(seed);
  CallGraph graph;
  const auto width = std::max(1U, static_cast<uint32_t>(std::sqrt(size)));
  for (uint32_t function = 0; function < size; ++function) {
    graph.AddFunction();
    const uint32_t next = (function / width + 1) * width;
    if (next >= size) {
      continue;
    }
    for (uint32_t call = 0; call < kCallsPerFunction; ++call) {
      graph.AddCall(next + random.Below(std::min(width, size - next)));
    }
  }
  return graph;
}

CallGraph MakeRing(uint32_t size, uint64_t) {
  CallGraph graph;
  for (uint32_t function = 0; function < size; ++function) {
    graph.AddFunction();
    graph.AddCall((function + 1) % size);
  }
  return graph;
}

// Rings of which each calls the next one, where its own round closes.
CallGraph MakeChainOfRings(uint32_t size, uint64_t) {
  CallGraph graph;
  for (uint32_t function = 0; function < size; ++function) {
    const uint32_t first = function - function % kFunctionsPerRing;
    const uint32_t next = std::min(first + kFunctionsPerRing, size);
    graph.AddFunction();
    graph.AddCall(function + 1 < next ? function + 1 : first);
    if (function + 1 == next && next < size) {
      graph.AddCall(next);
    }
  }
  return graph;
}

CallGraph MakeComplete(uint32_t size, uint64_t) {
  CallGraph graph;
  for (uint32_t function = 0; function < size; ++function) {
    graph.AddFunction();
    for (uint32_t callee = 0; callee < size; ++callee) {
      if (callee != function) {
        graph.AddCall(callee);
      }
    }
  }
  return graph;
}

// One function above pairs, of which both call both of the next pair: 2^size call chains.
CallGraph MakeLadder(uint32_t size, uint64_t) {
  CallGraph graph;
  for (uint32_t function = 0; function < 2 * size + 1; ++function) {
    graph.AddFunction();
    const uint32_t next = function + 1 + function % 2;
    if (next < 2 * size + 1) {
      graph.AddCall(next);
      graph.AddCall(next + 1);
    }
  }
  return graph;
}

CallGraph MakeCalledByAll(uint32_t size, uint64_t) {
  CallGraph graph;
  graph.AddFunction();
  for (uint32_t caller = 1; caller <= size; ++caller) {
    graph.AddFunction();
    graph.AddCall(0);
  }
  return graph;
}

CallGraph MakeCallingAll(uint32_t size, uint64_t) {
  CallGraph graph;
  graph.AddFunction();
  for (uint32_t callee = 1; callee <= size; ++callee) {
    graph.AddCall(callee);
  }
  for (uint32_t callee = 1; callee <= size; ++callee) {
    graph.AddFunction();
  }
  return graph;
}

constexpr GraphKind kKinds[] = {
    {"random", "functions, each calling 4 others", MakeRandom},
    {"layered", "functions, each calling 4 of the next layer", MakeLayered},
    {"ring", "functions, each calling the next", MakeRing},
    {"chain-of-rings", "functions in rings of 10", MakeChainOfRings},
    {"complete", "functions, each calling all others", MakeComplete},
    {"ladder", "pairs of functions, both calling both of the next pair", MakeLadder},
    {"called-by-all", "callers of one function", MakeCalledByAll},
    {"calling-all", "callees of one function", MakeCallingAll},
};

}  // namespace

std::span<const GraphKind> GraphKinds() {
  return kKinds;
}

}  // namespace velkor::bench
