#pragma once

#include <cstdint>
#include <vector>

#include "core/bounds.h"

namespace velkor {

// A function on a path, with the bytes of one activation. Functions are indices in their table.
struct ExplainedCall {
  uint32_t function = 0;
  uint64_t bytes = 0;
};

// One part of a function's known bytes.
struct ExplanationRow {
  uint32_t function = 0;
  uint64_t bytes = 0;
  uint64_t times = 1;  // activations that the bytes count
  uint32_t group = StkBounds::kNoGroup;
  // For a counted member of a group: the heaviest path from one of its callees to the next counted
  // member. bytes = times x (one activation of the function + those of the path), unless kMaxBound
  // was reached.
  std::vector<ExplainedCall> calls;
  bool callsLeftOut = false;  // there are more of them than were asked for, and calls is empty
};

// Takes the known bytes of functions apart: into rows whose bytes add up to exactly what
// StkBounds::Known says. Along calls that are in no group, and inside a group from where it is
// entered, there is one row a function; each counted member of a settled group has a row, in the
// order of the table; of an unsettled group one row names the heaviest member.
//
// A value of a few bytes a function: it keeps where each function goes on, and neither the table
// nor the bounds. Made in time linear in functions and calls; an answer costs its rows.
class Explanations {
 public:
  static constexpr size_t kMostCalls = 5'000'000;

  Explanations() = default;  // of no function
  // Of a computed table.
  Explanations(const StkFunctionTable& table, const StkBounds& bounds);

  // The paths below the counted members of one group can be long, and many: each is followed while
  // those of all rows hold no more than mostCalls.
  std::vector<ExplanationRow> Of(uint32_t start, size_t mostCalls = kMostCalls) const;

  uint64_t ActivationSizeOf(uint32_t function) const { return own_[function]; }
  // The position in StkBounds::Groups, or StkBounds::kNoGroup.
  uint32_t GroupOf(uint32_t function) const { return group_[function]; }

 private:
  struct Counted {
    uint32_t function = 0;
    uint64_t below = 0;  // bytes of the path to the next counted member
  };
  struct Group {
    uint64_t activations = 0;      // of each counted member
    std::vector<Counted> counted;  // ascending; none: unsettled
    uint32_t heaviest = 0;         // of the members of an unsettled one
    uint32_t below = kNone;        // the callee outside it that it goes on with
  };
  class Rows;

  static constexpr uint32_t kNone = 0xFFFFFFFF;

  void AddGroup(const StkFunctionTable& table, const StkBounds& bounds, uint32_t number);
  // Appends what the group of the function takes when it is entered there; where it goes on.
  uint32_t AppendGroup(uint32_t function, Rows& rows) const;
  // The row's calls, from function on; what they leave of mostCalls.
  size_t FollowPath(uint32_t function, size_t mostCalls, ExplanationRow& row) const;

  std::vector<uint64_t> own_;    // bytes of one activation
  std::vector<uint32_t> group_;  // or kNoGroup
  // The callee that a function in no group goes on with; in a settled group the member. Or kNone.
  std::vector<uint32_t> next_;
  std::vector<Group> groups_;
};

}  // namespace velkor
