#include "core/detail/call_graph.h"

namespace velkor {

CallGraph::CallGraph(const StkFunctionTable& table) {
  for (const StkFunction* function : table.Functions()) {
    Append(table, *function);
  }
}

CallGraph CallGraph::OfBounds(const StkFunctionTable& table) {
  CallGraph graph;
  for (const StkFunction* function : table.Functions()) {
    graph.Append(table, BoundCallees(*function));
  }
  return graph;
}

void CallGraph::Append(const StkFunctionTable& table, const StkFunction& function) {
  Append(table, AllCallees(function));
}

void CallGraph::Append(const StkFunctionTable& table, const CallRange& calls) {
  for (const StkFunction* callee : calls) {
    callees_.push_back(table.IndexOf(*callee));
  }
  first_.push_back(static_cast<uint32_t>(callees_.size()));
}

void CallGraph::Append(std::span<const uint32_t> callees) {
  callees_.insert(callees_.end(), callees.begin(), callees.end());
  first_.push_back(static_cast<uint32_t>(callees_.size()));
}

std::vector<uint32_t> CallGraph::UncalledFunctions() const {
  std::vector<bool> isCalled(Count(), false);
  for (const uint32_t callee : callees_) {
    isCalled[callee] = true;
  }
  std::vector<uint32_t> uncalled;
  for (uint32_t function = 0; function < Count(); ++function) {
    if (!isCalled[function]) {
      uncalled.push_back(function);
    }
  }
  return uncalled;
}

}  // namespace velkor
