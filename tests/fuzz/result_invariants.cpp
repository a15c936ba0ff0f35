#include <algorithm>
#include <optional>
#include <string>

#include "core/adjustments.h"
#include "core/completeness.h"
#include "core/function_text.h"
#include "fuzz/invariants.h"
#include "fuzz/reachability.h"
#include "fuzz/require.h"

namespace velkor::testing {

namespace {

uint32_t LargestTotal(const StkFunctionList& functions) {
  uint32_t largest = 0;
  for (const StkFunction* function : functions) {
    largest = std::max(largest, function->totalStackSize);
  }
  return largest;
}

uint32_t OrOverSize(uint64_t size) {
  return size > kSizeLimit ? kOverSize : static_cast<uint32_t>(size);
}

// What the function's own figures and its largest callee make together.
uint32_t StatedTotal(const StkFunction& function) {
  const uint64_t own = uint64_t{function.frameSize} + function.maxCalleeSize;
  if (function.adjustment == nullptr) {
    const bool added = function.Is(FN_LIBRARY | FN_FIXED_EXTRA);
    return OrOverSize(own + (added ? function.librarySize : 0));
  }
  const StkAppliedAdjustment& adjustment = *function.adjustment;
  const uint64_t round = own + (adjustment.margin == kNoMargin ? 0 : adjustment.margin);
  const bool repeated = function.Is(FN_RECURSIVE) && adjustment.depth != kNoDepth;
  return round > kSizeLimit ? kOverSize : OrOverSize(round * (repeated ? adjustment.depth : 1));
}

void CheckTotal(const StkFunction& function) {
  Require(function.pendingAdjustment == nullptr, "nothing pending is left", function.name);
  RequireEqual(function.totalStackSize, StatedTotal(function), "a total is its sum", function.name);
  RequireEqual(TotalSizeText(function) == "SIZEOVER", function.totalStackSize == kOverSize,
               "a size over the limit shows as one", function.name);
}

// A call back into the recursion that is being computed adds nothing, so a recursive function may
// leave out those callees that lie in its own cycle, and no others.
void CheckLargestCallee(const StkFunction& function, const Reachability& graph) {
  const StkFunctionList callees = AllCallees(function);
  StkFunctionList outside;
  std::copy_if(callees.begin(), callees.end(), std::back_inserter(outside),
               [&](const StkFunction* callee) { return !graph.Reaches(*callee, function); });
  Require(function.maxCalleeSize >= LargestTotal(outside), "no callee is understated",
          function.name);
  Require(function.maxCalleeSize <= LargestTotal(callees), "no callee is overstated",
          function.name);
  Require(function.maxCalleeSize == 0 || std::any_of(callees.begin(), callees.end(),
                                                     [&function](const StkFunction* callee) {
                                                       return callee->totalStackSize ==
                                                              function.maxCalleeSize;
                                                     }),
          "the largest callee is one", function.name);
}

void CheckChainCount(const StkFunction& function) {
  Require(function.chainCount >= 1, "a function begins at least one chain", function.name);
  if (function.Is(FN_RECURSIVE)) {
    return;
  }
  int64_t chains = 0;
  for (const StkFunction* callee : AllCallees(function)) {
    chains += callee->chainCount;
  }
  chains = std::clamp<int64_t>(chains, 1, kMaxChainCount);
  RequireEqual(static_cast<uint64_t>(function.chainCount), static_cast<uint64_t>(chains),
               "a chain count is the sum of those below", function.name);
}

void CheckComplete(const StkFunctionTable& table, const Reachability& graph) {
  const std::vector<bool> complete = CompleteFunctions(table);
  for (const auto& function : table.Functions()) {
    const bool certain =
        !IsSizeUnknown(*function) &&
        std::none_of(table.Functions().begin(), table.Functions().end(), [&](const auto& below) {
          return graph.Reaches(*function, *below) && IsSizeUnknown(*below);
        });
    RequireEqual(complete[function->index], certain,
                 "a total is certain when everything below it is", function->name);
  }
}

void CheckRoots(const StkFunctionTable& table, const StkRootList& roots) {
  StkFunctionList marked;
  bool over = false;
  for (const auto& function : table.Functions()) {
    if (function->Is(FN_ROOT)) {
      marked.push_back(function);
      over |= function->totalStackSize == kOverSize;
    }
    const bool called = !function->callers.empty() || !function->extraCallers.empty();
    Require(called || function->Is(FN_ROOT), "what nothing calls is top-level", function->name);
    Require(!called || !function->Is(FN_ROOT) || function->Is(FN_RECURSIVE),
            "what is called is top-level only in a recursion", function->name);
  }
  Require(marked == roots.Functions(), "the root list holds the top-level functions in order");
  RequireEqual(table.Overflow(), over, "the overflow flag is that of a root");
}

void CheckClosure(const StkFunctionTable& table, const StkRootList& roots) {
  const Reachability graph(table);
  for (const auto& function : table.Functions()) {
    RequireEqual(function->Is(FN_RECURSIVE), graph.Reaches(*function, *function),
                 "recursive is what can reach itself", function->name);
    Require(function->Is(FN_ROOT) || std::any_of(roots.Functions().begin(), roots.Functions().end(),
                                                 [&](const StkFunction* root) {
                                                   return graph.Reaches(*root, *function);
                                                 }),
            "every function is below a top-level function", function->name);
    CheckLargestCallee(*function, graph);
  }
  CheckComplete(table, graph);
}

// Every function that can reach this one, without it.
StkFunctionList Above(const StkFunctionTable& table, const StkFunction& function) {
  std::vector<bool> seen(table.Count());
  seen[function.index] = true;
  StkFunctionList above;
  StkFunctionList open = function.callers;
  open.insert(open.end(), function.extraCallers.begin(), function.extraCallers.end());
  while (!open.empty()) {
    StkFunction* caller = open.back();
    open.pop_back();
    if (!seen[caller->index]) {
      seen[caller->index] = true;
      above.push_back(caller);
      open.insert(open.end(), caller->callers.begin(), caller->callers.end());
      open.insert(open.end(), caller->extraCallers.begin(), caller->extraCallers.end());
    }
  }
  return above;
}

}  // namespace

void CheckResults(const StkFunctionTable& table, const StkRootList& roots) {
  CheckExtraLinks(table);
  CheckRoots(table, roots);
  for (const auto& function : table.Functions()) {
    CheckTotal(*function);
    CheckChainCount(*function);
  }
  if (table.Count() <= Reachability::kMaxFunctions) {
    CheckClosure(table, roots);
  }
}

std::vector<bool> TopLevelMarks(const StkFunctionTable& table) {
  std::vector<bool> marks;
  for (const auto& function : table.Functions()) {
    marks.push_back(function->Is(FN_ROOT));
  }
  return marks;
}

void CheckTopLevel(const StkFunctionTable& table, const std::vector<bool>& marksBefore) {
  if (table.Count() > Reachability::kMaxFunctions) {
    return;
  }
  std::vector<bool> marks = marksBefore;
  for (const auto& function : table.Functions()) {
    const StkFunctionList above = Above(table, *function);
    const bool onlyRecursion =
        std::all_of(above.begin(), above.end(), [&marks](const StkFunction* caller) {
          return caller->Is(FN_RECURSIVE) && !marks[caller->index];
        });
    const bool called = !function->callers.empty() || !function->extraCallers.empty();
    marks[function->index] = !called || (function->Is(FN_RECURSIVE) && onlyRecursion);
    RequireEqual(function->Is(FN_ROOT), marks[function->index], "top-level is what the rule says",
                 function->name);
  }
}

}  // namespace velkor::testing
