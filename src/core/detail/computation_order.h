#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace velkor {

// The functions of one table, by index, in the order in which their totals are computed: a
// depth-first walk from each top-level function in turn, each function where the walk leaves it.
// Depends on nothing but the callee lists and the top-level functions. After a change that concerns
// no recursion it may be an order in which all totals come out alike, and no longer that of the walk.
//
// So a callee either comes before its caller, or it is further up the path of the walk when its
// caller is computed (or is the caller itself). No function of a path but its head is top-level: a
// top-level function that can be reached from another one stands before it in the table, or the
// other's mark would have kept it from being top-level; so it has its result by then.
class ComputationOrder {
 public:
  ComputationOrder() = default;
  // functions: each function of a table of count at most once.
  ComputationOrder(std::vector<uint32_t> functions, size_t count)
      : functions_(std::move(functions)), positions_(count, kNone) {
    for (uint32_t i = 0; i < functions_.size(); ++i) {
      positions_[functions_[i]] = i;
    }
  }

  size_t size() const { return functions_.size(); }
  uint32_t At(size_t position) const { return functions_[position]; }
  // kNone for a function that is never computed.
  uint32_t PositionOf(uint32_t function) const { return positions_[function]; }
  std::span<const uint32_t> Positions() const { return positions_; }
  bool IsOfWalk() const { return isOfWalk_; }
  void NoteOtherCalls() { isOfWalk_ = false; }
  // Those that are marked, all of them between the two functions or the last of these itself, come
  // before the first one. All others keep their order. Takes time as the distance of the two.
  void MoveBefore(uint32_t first, uint32_t last, const std::vector<bool>& isMoved) {
    const uint32_t start = positions_[first];
    const uint32_t end = positions_[last] + 1;
    std::stable_partition(functions_.begin() + start, functions_.begin() + end,
                          [&isMoved](uint32_t function) { return isMoved[function]; });
    for (uint32_t position = start; position < end; ++position) {
      positions_[functions_[position]] = position;
    }
  }

  static constexpr uint32_t kNone = 0xFFFFFFFF;

 private:
  std::vector<uint32_t> functions_;
  std::vector<uint32_t> positions_;  // by function
  bool isOfWalk_ = true;
};

}  // namespace velkor
