#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "core/bounds.h"
#include "core/function_table.h"
#include "core/statement_plan.h"

namespace velkor {

// The causes for which functions have no bound, and which functions they reach. A node is a
// function without a bound, or a group of them; a cause is what one step of a plan takes away.
class CauseGraph {
 public:
  // Of all functions, or of those that one of them, which then counts as the only top-level one,
  // can reach.
  CauseGraph(const StkFunctionTable& table, const StkBounds& bounds,
             std::optional<uint32_t> onlyEntry);

  uint32_t NodeCount() const { return static_cast<uint32_t>(entries_.size()); }
  uint32_t CauseCount() const { return static_cast<uint32_t>(steps_.size()); }
  uint32_t CallCount() const { return static_cast<uint32_t>(callees_.size()); }
  // What the node misses itself.
  std::span<const uint32_t> Causes(uint32_t node) const {
    return std::span(causes_).subspan(firstCause_[node], firstCause_[node + 1] - firstCause_[node]);
  }
  // Of smaller numbers.
  std::span<const uint32_t> Callees(uint32_t node) const {
    return std::span(callees_).subspan(firstCallee_[node],
                                       firstCallee_[node + 1] - firstCallee_[node]);
  }
  // Top-level functions among those that the node stands for.
  uint32_t Entries(uint32_t node) const { return entries_[node]; }
  // By cause; frees is not counted.
  std::vector<PlannedStep>& Steps() { return steps_; }

 private:
  static constexpr uint32_t kNone = 0xFFFFFFFF;

  std::vector<bool> ReachedFromEntry() const;
  bool IsEntry(uint32_t function) const;
  void AddNode(std::span<const uint32_t> members);
  void AddCallees(std::span<const uint32_t> members);
  void AddCauses(std::span<const uint32_t> members);
  // Ascending: those whose depths limit the recursion of an unsettled group.
  std::vector<uint32_t> LimitingMembers(const RecursionGroup& group) const;
  bool IsEnteredFromOutside(const StkFunction& member, uint32_t group) const;
  void AddCause(PlannedStep step);

  const StkFunctionTable& table_;
  const StkBounds& bounds_;
  const std::optional<uint32_t> onlyEntry_;
  std::vector<uint32_t> nodeOf_;  // by function
  std::vector<uint32_t> entries_;
  std::vector<uint32_t> firstCallee_{0};
  std::vector<uint32_t> callees_;
  std::vector<uint32_t> metBy_;  // by node: the last one for which it was met as a callee
  std::vector<uint32_t> firstCause_{0};
  std::vector<uint32_t> causes_;
  std::vector<PlannedStep> steps_;
};

}  // namespace velkor
