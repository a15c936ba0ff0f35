#pragma once

#include <cstdint>
#include <vector>

#include "core/function_table.h"

namespace velkor::ui {

// For every function the shortest call path to it from a top-level function, found in steps of
// less than a millisecond. Refers to the table, whose calls must not change meanwhile.
class ShortestWays {
 public:
  ShortestWays(const StkFunctionTable& functions, const StkFunctionList& roots);

  // False once all are known.
  bool Step();
  // From the top-level function down to this one, both included. Empty when no path leads there.
  StkFunctionList To(const StkFunction& function) const;

 private:
  static constexpr uint32_t kNotReached = 0xFFFFFFFF;

  void Reach(uint32_t function, uint32_t caller);

  const StkFunctionTable& functions_;
  std::vector<uint32_t> caller_;   // by function; of a top-level one itself
  std::vector<uint32_t> reached_;  // in the order in which they were
  size_t followed_ = 0;            // of reached_, those whose callees are reached
  size_t callee_ = 0;              // the next of the one that is being followed
};

}  // namespace velkor::ui
