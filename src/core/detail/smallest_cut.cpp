#include "core/detail/smallest_cut.h"

#include <bit>

namespace velkor {

namespace {

// The next larger number with as many bits.
uint32_t NextOfSize(uint32_t set) {
  const uint32_t lowest = set & (~set + 1);
  const uint32_t carried = set + lowest;
  return carried | (((set ^ carried) / lowest) >> 2);
}

}  // namespace

std::vector<uint32_t> SmallestCut::Find() const {
  Set best = 0;
  bool found = BreaksAllCycles(best);
  for (uint32_t size = 1; !found; ++size) {
    for (Set cut = Bit(size) - 1; cut <= All(); cut = NextOfSize(cut)) {
      if ((!found || PreferredIn(cut) > PreferredIn(best)) && BreaksAllCycles(cut)) {
        best = cut;
        found = true;
      }
    }
  }
  std::vector<uint32_t> functions;
  for (uint32_t function = 0; function < count_; ++function) {
    if ((best & Bit(function)) != 0) {
      functions.push_back(function);
    }
  }
  return functions;
}

int SmallestCut::PreferredIn(Set cut) const {
  return std::popcount(cut & preferred_);
}

// A function that calls none of those left is on no cycle among them.
bool SmallestCut::BreaksAllCycles(Set cut) const {
  Set left = All() & ~cut;
  for (Set before = 0; left != before;) {
    before = left;
    for (uint32_t function = 0; function < count_; ++function) {
      if ((callees_[function] & left) == 0) {
        left &= ~Bit(function);
      }
    }
  }
  return left == 0;
}

}  // namespace velkor
