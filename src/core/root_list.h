#pragma once

#include <cstdint>
#include <vector>

#include "core/function_list.h"

namespace velkor {

// The top-level functions of one analysis in table order, with what the computation keeps between
// two runs that share one graph. Filled by Recompute only. Empty until the first computation.
class StkRootList {
 public:
  const StkFunctionList& Functions() const { return functions_; }
  bool empty() const { return functions_.empty(); }
  size_t size() const { return functions_.size(); }
  void Clear();

 private:
  friend class StkComputation;

  // One step of the order in which totals are computed: a function after all those whose totals
  // compete for its maximum.
  struct Step {
    uint32_t function = 0;  // index into the table
    uint32_t root = 0;      // index of the top-level function that reached it first
  };

  StkFunctionList functions_;
  std::vector<Step> order_;
  std::vector<uint32_t> position_;  // of each function in order_
};

}  // namespace velkor
