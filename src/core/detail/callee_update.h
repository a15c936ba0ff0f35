#pragma once

#include <span>

#include "core/function_table.h"
#include "core/root_list.h"

namespace velkor {

// What one function called through pointers before its extra callees were changed.
struct CalleeChange {
  StkFunction* caller = nullptr;
  StkFunctionList before;
};

// Takes changes of extra callees up without a look at the whole graph, where no recursion is
// concerned: what was and what is called leads to none, no call closes a new one, and none is
// top-level. Then marks of recursion and the order within each recursion stay as they are, whichever
// way a walk takes; only the top-level marks of those callees can change, and the callee must come
// before the caller.
class CalleeUpdate {
 public:
  CalleeUpdate(StkFunctionTable& table, StkRootList& roots) : table_(table), roots_(roots) {}

  // The first time after a rebuilding in time linear in functions and calls, else mostly not.
  // False: the next Recompute has to rebuild. True: what a rebuilding would have brought is there,
  // and the next Recompute computes the totals that change.
  bool Follow(std::span<const CalleeChange> changes);

 private:
  bool CanFollow() const;
  void FindWhatLeadsToRecursion();
  bool Follow(const CalleeChange& change);
  bool LeadNowhere(const StkFunctionList& callees) const;
  bool PutBefore(const StkFunction& callee, const StkFunction& caller);
  void AddCall(StkFunction& callee, const StkFunction& caller);
  void TakeCall(StkFunction& callee, const StkFunction& caller);
  void CountOverLimit(const StkFunction& function, uint32_t change);

  StkFunctionTable& table_;
  StkRootList& roots_;
};

}  // namespace velkor
