#include "core/call_graph.h"

namespace velkor {

CallGraph::CallGraph(const StkFunctionTable& table) {
  size_t calls = 0;
  for (const auto& function : table.Functions()) {
    calls += function->callees.size() + function->extraCallees.size();
  }
  first_.reserve(table.Count() + size_t{1});
  callees_.reserve(calls);
  for (const auto& function : table.Functions()) {
    first_.push_back(static_cast<uint32_t>(callees_.size()));
    for (const StkFunctionList* list : {&function->callees, &function->extraCallees}) {
      for (const StkFunction* callee : *list) {
        callees_.push_back(callee->index);
      }
    }
  }
  first_.push_back(static_cast<uint32_t>(callees_.size()));
}

}  // namespace velkor
