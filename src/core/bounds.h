#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "core/bound_arithmetic.h"
#include "core/detail/group_paths.h"
#include "core/function_table.h"
#include "core/reason.h"

namespace velkor {

enum class BoundState : uint8_t {
  kBounded,    // no call path that the statements allow takes more than the bound
  kUnbounded,  // something is missing, or a recursion is not limited
  kOver,       // there is a bound, over the size limit
};
// "bounded", "unbounded", "over": as outputs for programs name them.
std::string_view BoundStateName(BoundState state);

// Functions that can all reach each other, at least one call among them.
struct RecursionGroup {
  std::vector<uint32_t> members;  // ascending
  bool settled = false;           // the stated depths limit the recursion
  std::vector<uint32_t> counted;  // ascending: those that every way round passes; none: unsettled
  uint64_t activations = 0;       // of each counted one on one path; 0: unsettled
};

// The bounds of all functions of one table: for each a number of bytes that no call path allowed by
// the statements can exceed, whatever the order of the functions, or why there is none.
//
// bound(f), f in no group: ActivationSize(f) + the largest bound among all callees.
// bound(f), f in a settled group: the sum over its counted members d of activations x
//   (ActivationSize(d) + the heaviest path between two of them that begins at a callee of d)
//   + the heaviest path from f that meets no counted member (0 when f is one)
//   + the largest bound among the callees outside the group of any member.
// known(f) is the same with what is missing counted as 0, and an unsettled group as its heaviest
// member + the largest known among the callees outside. It is the bound where there is one.
//
// Sums and products stay at kMaxBound. Linear in functions and calls; nothing recurses. Belongs to
// the thread that owns the table, which must outlive it.
class StkBounds {
 public:
  static constexpr uint32_t kNoGroup = GroupPlaces::kNoGroup;

  explicit StkBounds(StkFunctionTable& table) : table_(table) {}

  // To be called after a Recompute and before the answers below, which otherwise are those of the
  // state before. Computes what has changed since the last time can change. One StkBounds a table:
  // it takes the table's note of changes.
  void Update();

  BoundState State(const StkFunction& function) const;
  // At most kMaxBound. The bound unless the state is kUnbounded.
  uint64_t Known(const StkFunction& function) const { return KnownAt(function.index); }
  uint64_t KnownAt(uint32_t index) const { return results_.known[index]; }
  // The kinds that keep the function from having a bound: its own and those of all that it can
  // reach.
  ReasonSet Reasons(const StkFunction& function) const { return results_.reasons[function.index]; }
  // Only its own; recursion: it is a member of an unsettled group.
  ReasonSet OwnReasons(const StkFunction& function) const;
  // Bounded, and the total is not below the bound: the total may be taken for a bound.
  bool IsComplete(const StkFunction& function) const;

  // By smallest member.
  const std::vector<RecursionGroup>& Groups() const { return groups_; }
  // The group's position among them, or kNoGroup.
  uint32_t GroupOf(const StkFunction& function) const { return places_.group[function.index]; }
  const GroupPlaces& Places() const { return places_; }
  // All functions, each after all that it calls outside its group; the members of a group follow
  // each other.
  std::span<const uint32_t> CalleesFirst() const { return members_; }

 private:
  struct Results {
    std::vector<uint64_t> known;
    std::vector<ReasonSet> reasons;
  };

  struct Below {
    uint64_t known = 0;
    ReasonSet reasons;
  };

  void FindStructure();
  void CollectGroups(const std::vector<bool>& recursive);
  void ComputeAll();
  void ComputeChanged(const StkFunctionList& functions);
  // Whether the callee has a smaller number now, its component like all others being what it was.
  bool PutBelow(uint32_t callee, uint32_t caller);
  std::span<const uint32_t> Members(uint32_t component) const;
  bool Compute(uint32_t component);
  bool ComputeAlone(uint32_t function);
  bool ComputeGroup(RecursionGroup& group);
  Below BelowGroup(const RecursionGroup& group) const;
  bool Set(uint32_t function, uint64_t known, ReasonSet reasons);

  StkFunctionTable& table_;
  std::vector<uint32_t> component_;    // of each function, numbered from the callees up
  std::vector<uint32_t> members_;      // all functions, component after component
  std::vector<uint32_t> firstMember_;  // where each component's begin; one entry more at the end
  GroupPlaces places_;
  std::vector<RecursionGroup> groups_;
  Results results_;
};

}  // namespace velkor
