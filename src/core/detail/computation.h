#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "core/detail/call_graph.h"
#include "core/detail/components.h"
#include "core/function_table.h"
#include "core/root_list.h"

namespace velkor {

// The steps of Recompute, over one table and its root list.
class StkComputation {
 public:
  StkComputation(StkFunctionTable& table, StkRootList& roots) : table_(table), roots_(roots) {}

  // Makes extra callees of the callee lists of pending adjustments, links extra callers, marks
  // recursion and top-level functions and fills the root list. Must not be left out when the root
  // list is empty.
  void Rebuild();

  // Every total, largest callee total and chain count, and the overflow flag. Answers the
  // functions with a pending adjustment, in the order in which they were computed; the pending
  // adjustments are used but stay pending. Where the graph and its order are those of the last
  // computation, only what the touched functions of the table change is computed.
  StkFunctionList ComputeTotals();

 private:
  std::vector<uint32_t> ReadCalls();
  void MarkRecursion(const Components& components);
  std::vector<uint32_t> WithEntries(std::vector<uint32_t> topLevel) const;
  void MarkTopLevel(const std::vector<uint32_t>& topLevel);
  // order: what the walk from the top-level functions before firstRoot has left already.
  void FindOrder(std::vector<uint32_t> order, size_t firstRoot);

  StkFunctionTable& table_;
  StkRootList& roots_;
  std::optional<CallGraph> graph_;
  std::vector<uint32_t> entries_;  // the functions marked FN_ENTRY, ascending
};

}  // namespace velkor
