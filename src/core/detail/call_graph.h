#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "core/call_range.h"
#include "core/function_table.h"

namespace velkor {

// The calls of one table as plain indices: for each function its callees, then its extra callees,
// in the order of its lists. A copy, made for one computation so that its walks stay in a few
// bytes a call; it does not follow later changes of the lists.
class CallGraph {
 public:
  CallGraph() = default;
  explicit CallGraph(const StkFunctionTable& table);
  // The calls on which bounds depend.
  static CallGraph OfBounds(const StkFunctionTable& table);

  // The function of the next index.
  void Append(const StkFunctionTable& table, const StkFunction& function);
  void Append(std::span<const uint32_t> callees);
  void Append(const StkFunctionTable& table, const CallRange& calls);

  uint32_t Count() const { return static_cast<uint32_t>(first_.size() - 1); }
  std::span<const uint32_t> Callees(uint32_t function) const {
    return {callees_.data() + first_[function], first_[function + 1] - first_[function]};
  }
  // Those that nothing calls, themselves included, ascending.
  std::vector<uint32_t> UncalledFunctions() const;
  // Makes a Callees of the near future quick; and then what it answers.
  void Prefetch(uint32_t function) const { __builtin_prefetch(&first_[function]); }
  void PrefetchCallees(uint32_t function) const {
    __builtin_prefetch(callees_.data() + first_[function]);
  }

 private:
  std::vector<uint32_t> first_{0};  // where each function's callees begin; one more at the end
  std::vector<uint32_t> callees_;
};

// One function on the explicit stack of a depth-first walk, with the calls not yet followed.
struct CallCursor {
  uint32_t function = 0;
  const uint32_t* next = nullptr;
  const uint32_t* end = nullptr;

  CallCursor(uint32_t entered, std::span<const uint32_t> callees)
      : function(entered), next(callees.data()), end(next + callees.size()) {}
  bool AtEnd() const { return next == end; }
};

}  // namespace velkor
