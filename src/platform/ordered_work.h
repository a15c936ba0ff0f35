#pragma once

#include <cstddef>
#include <cstdint>
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

// The numbers from 0 up to the one before count, in ranges of some thousands, each of which is
// done by any of several threads, at most so many, 0: as many as run at once. Returns when all
// ranges are done. What a range throws comes out in the caller's thread.
void ForEachRange(size_t count, size_t threads,
                  const std::function<void(uint32_t first, uint32_t end)>& work);

}  // namespace velkor
