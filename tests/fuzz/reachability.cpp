#include "fuzz/reachability.h"

namespace velkor::testing {

namespace {

std::vector<bool> ReachedFrom(const StkFunction& start, size_t count) {
  std::vector<bool> reached(count);
  std::vector<const StkFunction*> open = {&start};
  while (!open.empty()) {
    const StkFunction& function = *open.back();
    open.pop_back();
    for (StkFunction* callee : AllCallees(function)) {
      if (!reached[callee->index]) {
        reached[callee->index] = true;
        open.push_back(callee);
      }
    }
  }
  return reached;
}

}  // namespace

StkFunctionList AllCallees(const StkFunction& function) {
  StkFunctionList all = function.callees;
  all.insert(all.end(), function.extraCallees.begin(), function.extraCallees.end());
  return all;
}

Reachability::Reachability(const StkFunctionTable& table) {
  for (const auto& function : table.Functions()) {
    reached_.push_back(ReachedFrom(*function, table.Count()));
  }
}

}  // namespace velkor::testing
