#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace velkor {

// The smallest set of functions that every cycle of a very small graph passes, found by trying them
// all.
class SmallestCut {
 public:
  static constexpr uint32_t kMost = 12;

  // count: at most kMost.
  explicit SmallestCut(uint32_t count) : count_(count) {}

  void AddCall(uint32_t caller, uint32_t callee) { callees_[caller] |= Bit(callee); }
  // Of several smallest sets one with the most of these.
  void Prefer(uint32_t function) { preferred_ |= Bit(function); }
  // Ascending.
  std::vector<uint32_t> Find() const;

 private:
  using Set = uint32_t;

  static Set Bit(uint32_t function) { return Set{1} << function; }
  Set All() const { return Bit(count_) - 1; }
  bool BreaksAllCycles(Set cut) const;
  int PreferredIn(Set cut) const;

  const uint32_t count_;
  Set preferred_ = 0;
  std::array<Set, kMost> callees_{};
};

}  // namespace velkor
