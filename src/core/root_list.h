#pragma once

#include <cstdint>

#include "core/computation_order.h"
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
  // To be called when a callee list holds the same functions as before, but otherwise arranged:
  // the next computation then takes the functions in the order of the new lists. (When other
  // functions are called, the next Recompute must rebuild instead.)
  void ForgetOrder();

 private:
  friend class StkComputation;

  StkFunctionList functions_;
  ComputationOrder order_;  // empty when not known
  uint32_t overLimit_ = 0;  // how many of the functions are, by the last computation
};

}  // namespace velkor
