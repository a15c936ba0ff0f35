#pragma once

#include <cstddef>
#include <functional>

namespace velkor {

// A work in parts that do not depend on each other: each is made, by any of several threads, and
// then taken, in the caller's thread and in the order of the parts, so that the result is the same
// for every number of threads. Only a few parts are made and not yet taken: each stands in a slot,
// which no other part uses meanwhile, and whose memory the next one finds.
struct OrderedWork {
  using Step = std::function<void(size_t part, size_t slot)>;

  size_t parts = 0;
  size_t threads = 0;  // at most so many, the caller's among them; 0: as many as run at once
  Step make;
  Step take;

  // Below this.
  size_t Slots() const;
  // The caller's thread makes parts too instead of waiting. What a step throws comes out here, the
  // part's turn having come; no step runs any more then.
  void Run() const;
};

}  // namespace velkor
