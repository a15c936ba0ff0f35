#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "core/bounds.h"

namespace velkor {

// A function on a path, with the bytes of one activation.
struct ExplainedCall {
  const StkFunction* function = nullptr;
  uint64_t bytes = 0;
};

// One part of a function's known bytes.
struct ExplanationRow {
  const StkFunction* function = nullptr;
  uint64_t bytes = 0;
  uint64_t times = 1;  // activations that the bytes count
  uint32_t group = StkBounds::kNoGroup;
  // For a counted member of a group: the heaviest path from one of its callees to the next counted
  // member. bytes = times x (one activation of the function + those of the path), unless kMaxBound
  // was reached.
  std::vector<ExplainedCall> calls;
  bool callsLeftOut = false;  // there are more of them than were asked for, and calls is empty
};

// Takes the known bytes of functions apart, one function after another: into rows whose bytes add
// up to exactly what StkBounds::Known says. Along calls that are in no group, and inside a group
// from where it is entered, there is one row a function; each counted member of a settled group has
// a row, in the order of the table; of an unsettled group one row names the heaviest member.
//
// Remembers where each function goes on, so that many explanations of one computed table, which
// must not change meanwhile, look at the calls of each function once.
class Explanations {
 public:
  static constexpr size_t kMostCalls = 5'000'000;

  Explanations(const StkFunctionTable& table, const StkBounds& bounds);

  // The paths below the counted members of one group can be long, and many: each is followed while
  // those of all rows hold no more than mostCalls.
  std::vector<ExplanationRow> Of(const StkFunction& start, size_t mostCalls = kMostCalls);

 private:
  struct Group {
    GroupPaths paths;
    uint32_t below = 0;  // the callee outside it that it goes on with, or kNone
  };
  class Rows;

  static constexpr uint32_t kNone = 0xFFFFFFFF;
  static constexpr uint32_t kNotAsked = 0xFFFFFFFE;

  uint32_t HeaviestBelow(uint32_t function);
  const Group& GroupAt(uint32_t number);
  // Appends what the group of the function takes when it is entered there; where it goes on.
  uint32_t AppendGroup(uint32_t function, Rows& rows);
  // The row's calls, from place on; what they leave of mostCalls.
  size_t FollowPath(const Group& group, const std::vector<uint32_t>& members, uint32_t place,
                    size_t mostCalls, ExplanationRow& row) const;
  const StkFunction& At(uint32_t function) const { return *table_.Functions()[function]; }

  const StkFunctionTable& table_;
  const StkBounds& bounds_;
  std::vector<uint32_t> below_;  // of functions in no group
  std::unordered_map<uint32_t, Group> groups_;
};

}  // namespace velkor
