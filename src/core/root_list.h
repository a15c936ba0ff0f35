#pragma once

#include "core/function_list.h"

namespace velkor {

// The top-level functions of one analysis in table order. Filled by Recompute only. Empty until the
// first computation.
class StkRootList {
 public:
  const StkFunctionList& Functions() const { return functions_; }
  bool empty() const { return functions_.empty(); }
  size_t size() const { return functions_.size(); }
  void Clear() { functions_.clear(); }

 private:
  friend class StkComputation;
  friend class CalleeUpdate;

  StkFunctionList functions_;
};

}  // namespace velkor
