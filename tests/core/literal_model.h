#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/function_table.h"
#include "core/specification_source.h"

namespace velkor::testing {

using IndexList = std::vector<size_t>;

IndexList Indices(const StkFunctionList& list);

struct ModelAdjustment {
  uint32_t margin = kNoMargin;
  uint32_t depth = kNoDepth;
  uint32_t line = 0;
  std::optional<IndexList> callees;

  explicit ModelAdjustment(const StkAdjustment& adjustment);
};

struct ModelFunction {
  std::string name;  // as messages name it
  uint32_t frameSize = 0;
  uint32_t flags = 0;
  uint32_t librarySize = 0;
  uint32_t total = 0;
  uint32_t maxCalleeSize = 0;
  int32_t chainCount = 1;
  bool done = false;
  IndexList callees, extraCallees, callers, extraCallers;
  std::optional<ModelAdjustment> pending;
  std::optional<StkAppliedAdjustment> applied;

  bool Is(uint32_t flag) const { return (flags & flag) != 0; }
};

// The computation and the adjustments as path walks that recurse, mark and take back, without any
// thought of cost: what the engine must agree with on every small database. Shares no code with
// it. Texts are not cut to their limits.
class LiteralModel {
 public:
  explicit LiteralModel(const StkFunctionTable& table);

  // The source is called "user.txt" when it is a user's file.
  void Recompute(bool rebuild, std::optional<SpecificationKind> source);
  bool AdjustFunction(size_t function, const ModelAdjustment& adjustment);
  bool CancelAdjustment(size_t function);
  bool CancelAllAdjustments();
  void ReportOverflow(size_t function);
  bool IsRecursiveWith(size_t function, const IndexList& proposed);

  std::vector<ModelFunction> functions;
  IndexList roots;
  bool overflow = false;
  std::vector<std::string> log;

 private:
  void ClearDone();
  void Link();
  void AppendInPostOrder(size_t function, IndexList& order);
  IndexList PostOrder();
  bool Reaches(size_t target, const IndexList& list, IndexList& path) const;
  bool AboveIsRecursive(size_t function, size_t current, IndexList& path) const;
  void DecideRoots();
  void CheckRecursionDepths(SpecificationKind kind);
  uint32_t Compute(size_t function, size_t root, IndexList& path, bool logPending);
  uint32_t WalkCallees(size_t function, const IndexList& list, size_t root, IndexList& path,
                       bool logPending);
  uint32_t Total(const ModelFunction& function) const;
  void ApplyPending(ModelFunction& function, bool logPending);
  std::string Information(const ModelAdjustment& adjustment, const ModelFunction& function,
                          bool compare, bool& changed) const;
  bool Cancel(ModelFunction& function);
  void WalkUp(size_t function, size_t current, IndexList& path);
  void Warn(const ModelFunction& function, bool depth);
};

}  // namespace velkor::testing
