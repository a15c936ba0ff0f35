#include "core/random_graph.h"

#include <string>

namespace velkor::testing {

RandomGraph::RandomGraph(uint32_t seed, uint32_t maxFunctions) : random_(seed) {
  const uint32_t count = 1 + Below(maxFunctions);
  for (uint32_t i = 0; i < count; ++i) {
    AddFunction();
  }
  const uint32_t calls = Below(count * 3);
  for (uint32_t i = 0; i < calls; ++i) {
    Connect(AnyFunction(), AnyFunction());
  }
}

void RandomGraph::AddFunction() {
  const std::string name = "_f" + std::to_string(table.Count());
  if (OneIn(5)) {
    StkFunction& function = table.AddUnknown(name);
    if (OneIn(2)) {
      table.SetLibrarySize(function, AnySize());
    }
    return;
  }
  StkFunction& function = table.AddDefined(name, files.Intern("a.c"));
  function.flags |= OneIn(3) ? 0u : uint32_t{FN_GLOBAL};
  function.frameSize = AnySize();
  if (OneIn(6)) {
    function.SetFixedExtra();
  }
}

uint32_t RandomGraph::AnySize() {
  return OneIn(30) ? 0xFFFFFFFF : OneIn(10) ? 65535 - Below(3) : OneIn(4) ? Below(30000) : Below(9);
}

void RandomGraph::Connect(StkFunction& caller, StkFunction& callee) {
  if (!caller.CallsDirectly(callee)) {
    caller.callees.push_back(&callee);
    callee.AddCaller(caller);
  }
}

void RandomGraph::ChangeCall() {
  StkFunction& caller = AnyFunction();
  if (caller.callees.empty() || OneIn(2)) {
    Connect(caller, AnyFunction());
  } else {
    StkFunction& callee = *caller.callees[Below(static_cast<uint32_t>(caller.callees.size()))];
    RemoveFunction(caller.callees, callee);
    RemoveFunction(callee.callers, caller);
  }
}

StkFunctionList RandomGraph::AnyFunctions() {
  StkFunctionList list;
  for (uint32_t wanted = Below(4); wanted > 0; --wanted) {
    StkFunction& function = AnyFunction();
    RemoveFunction(list, function);
    list.push_back(&function);
  }
  return list;
}

StkAdjustment RandomGraph::AnyAdjustment() {
  StkAdjustment adjustment;
  if (OneIn(2)) {
    adjustment.margin = OneIn(8) ? 0xFFFFFFFE - Below(3) : AnySize();
  }
  if (OneIn(2)) {
    adjustment.depth = OneIn(8) ? 0xFFFFFFFF : 1 + Below(5);
  }
  if (OneIn(2)) {
    adjustment.callees = AnyFunctions();
  }
  adjustment.line = 1 + Below(1000);
  return adjustment;
}

}  // namespace velkor::testing
