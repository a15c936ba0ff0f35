#include "core/completeness.h"

#include "core/adjustments.h"

namespace velkor {

// The doubt about a function is the doubt about everything that can reach it: it is carried from
// the functions of unknown size up through their callers.
std::vector<bool> CompleteFunctions(const StkFunctionTable& table) {
  std::vector<bool> complete(table.Count(), true);
  std::vector<const StkFunction*> waiting;
  const auto doubt = [&](const StkFunction& function) {
    const uint32_t index = table.IndexOf(function);
    if (complete[index]) {
      complete[index] = false;
      waiting.push_back(&function);
    }
  };
  for (StkFunction* function : table.Functions()) {
    if (IsSizeUnknown(*function)) {
      doubt(*function);
    }
  }
  while (!waiting.empty()) {
    const StkFunction& function = *waiting.back();
    waiting.pop_back();
    for (const StkFunctionList* list : {&function.callers, &function.extraCallers}) {
      for (const StkFunction* caller : *list) {
        doubt(*caller);
      }
    }
  }
  return complete;
}

}  // namespace velkor
