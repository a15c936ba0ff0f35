#pragma once

#include <cstddef>
#include <vector>

#include "core/function_table.h"

namespace velkor::testing {

// Which functions can reach which through callees and extra callees, by one search a function.
class Reachability {
 public:
  static constexpr size_t kMaxFunctions = 300;

  // Of a table of at most kMaxFunctions.
  explicit Reachability(const StkFunctionTable& table);

  // In one call or more.
  bool Reaches(const StkFunction& from, const StkFunction& to) const {
    return reached_[from.index][to.index];
  }
  bool InOneCycle(const StkFunction& one, const StkFunction& other) const {
    return Reaches(one, other) && Reaches(other, one);
  }

 private:
  std::vector<std::vector<bool>> reached_;
};

// Callees, then extra callees.
StkFunctionList AllCallees(const StkFunction& function);

}  // namespace velkor::testing
