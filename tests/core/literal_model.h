#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "core/function_table.h"
#include "core/root_list.h"

namespace velkor::testing {

using IndexList = std::vector<size_t>;

struct ModelFunction {
  uint32_t flags = 0;
  uint32_t total = 0;
  uint32_t maxCalleeSize = 0;
  int32_t chainCount = 1;
  bool done = false;
  IndexList callees, callers;  // extra ones behind the others

  bool Is(uint32_t flag) const { return (flags & flag) != 0; }
};

// The computation as path walks that recurse, mark and take back, without any thought of cost:
// what the engine must agree with on every small database. Shares no code with it. Calls and what
// is stated are the table's; recursion marks, top-level functions and totals are its own.
class LiteralModel {
 public:
  // With the marks that the table has.
  explicit LiteralModel(const StkFunctionTable& table);

  // After the table was computed, in the same way.
  void Recompute(bool rebuild);
  bool IsRecursiveWith(size_t function, const StkFunctionList& proposed);
  // Everything that a computation leaves behind, as text, so that a difference can be read.
  std::string Results() const;

 private:
  void Read();
  void ClearDone();
  void AppendInPostOrder(size_t function, IndexList& order);
  IndexList PostOrder();
  bool Reaches(size_t target, const IndexList& list, IndexList& path) const;
  bool AboveIsRecursive(size_t function, size_t current, IndexList& path) const;
  void DecideRoots();
  uint32_t Compute(size_t function, size_t root, IndexList& path);
  uint32_t LargestCallee(size_t function, size_t root, IndexList& path);
  uint32_t Total(size_t function) const;

  const StkFunctionTable& table_;
  std::vector<ModelFunction> functions_;
  IndexList roots_;
  bool overflow_ = false;
};

// The engine's, in the same words.
std::string Results(const StkFunctionTable& table, const StkRootList& roots);

}  // namespace velkor::testing
