#include "core/call_graph.h"

namespace velkor {

CallGraph::CallGraph(const StkFunctionTable& table) {
  for (const auto& function : table.Functions()) {
    Append(*function);
  }
}

void CallGraph::Append(const StkFunction& function) {
  for (const StkFunctionList* list : {&function.callees, &function.extraCallees}) {
    for (const StkFunction* callee : *list) {
      callees_.push_back(callee->index);
    }
  }
  first_.push_back(static_cast<uint32_t>(callees_.size()));
}

void CallGraph::Append(std::span<const uint32_t> callees) {
  callees_.insert(callees_.end(), callees.begin(), callees.end());
  first_.push_back(static_cast<uint32_t>(callees_.size()));
}

}  // namespace velkor
