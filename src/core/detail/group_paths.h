#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "core/function_table.h"

namespace velkor {

// Where the functions of a table stand in their groups of recursion.
struct GroupPlaces {
  static constexpr uint32_t kNoGroup = 0xFFFFFFFF;

  std::vector<uint32_t> group;  // of each function; kNoGroup for one that is not recursive
  std::vector<uint32_t> place;  // its position among the group's members
};

// The heaviest call paths inside one group, in bytes, as the stated depths cut them.
//
// Some members are counted: taken out of the group, they leave no cycle. What runs between one
// activation of a counted member and the next is then a path that meets no function twice. A
// member that states a depth is active at most as often as the product of all depths stated in the
// group says: depths are meant in rounds, a round of one function may hold all rounds of another,
// and which of them is the outer one depends on where the group is entered.
struct GroupPaths {
  static constexpr uint32_t kEnd = 0xFFFFFFFF;

  // Whether the statements limit the recursion. If not, all but own is empty.
  bool settled = false;
  std::vector<uint64_t> own;       // of each member, by place: bytes of one activation
  std::vector<bool> isCounted;     // by place
  uint64_t activations = 0;        // of each counted member on one path, at most kMaxBound
  std::vector<uint64_t> heaviest;  // by place: of the paths that begin at the member; of a counted
                                   // one: of those that begin at a callee, itself not included
  std::vector<uint32_t> next;      // by place: the member that such a path goes on with, or kEnd
};

// members: the functions of one group, ascending; their places in places. Linear in members and
// their calls.
GroupPaths FindGroupPaths(const StkFunctionTable& table, std::span<const uint32_t> members,
                          const GroupPlaces& places);

}  // namespace velkor
