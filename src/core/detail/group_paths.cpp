#include "core/detail/group_paths.h"

#include <algorithm>

#include "core/bound_arithmetic.h"
#include "core/call_range.h"

namespace velkor {

namespace {

class PathSearch {
 public:
  PathSearch(const StkFunctionTable& table, std::span<const uint32_t> members,
             const GroupPlaces& places)
      : table_(table), members_(members), places_(places), group_(places.group[members.front()]) {}

  GroupPaths Run() {
    for (uint32_t place = 0; place < members_.size(); ++place) {
      paths_.own.push_back(ActivationSize(table_, At(place)));
    }
    // A depth of 1 says that the function is not entered anew. Where the larger depths limit
    // the recursion already, it says nothing more.
    for (const uint32_t least : {2u, 1u}) {
      if (CountFrom(least) && Order()) {
        paths_.settled = true;
        MultiplyDepths();
        FindHeaviest();
        return std::move(paths_);
      }
    }
    paths_.isCounted.clear();
    return std::move(paths_);
  }

 private:
  const StkFunction& At(uint32_t place) const { return *table_.Functions()[members_[place]]; }

  // Calls visit with the place of each callee in the group that is not counted.
  template <typename Visit>
  void ForEachInside(uint32_t place, Visit visit) const {
    for (const StkFunction* callee : BoundCallees(At(place))) {
      const uint32_t index = table_.IndexOf(*callee);
      if (places_.group[index] == group_ && !paths_.isCounted[places_.place[index]]) {
        visit(places_.place[index]);
      }
    }
  }

  // Whether any member states so large a depth.
  bool CountFrom(uint32_t least) {
    paths_.isCounted.clear();
    for (uint32_t place = 0; place < members_.size(); ++place) {
      paths_.isCounted.push_back(StatedDepth(At(place)) >= least);
    }
    return std::ranges::find(paths_.isCounted, true) != paths_.isCounted.end();
  }

  // All that are not counted, callers before callees. False when they hold a cycle.
  bool Order() {
    std::vector<uint32_t> callers(members_.size(), 0);
    uint32_t wanted = 0;
    for (uint32_t place = 0; place < members_.size(); ++place) {
      if (!paths_.isCounted[place]) {
        ++wanted;
        ForEachInside(place, [&](uint32_t callee) { ++callers[callee]; });
      }
    }
    order_.clear();
    for (uint32_t place = 0; place < members_.size(); ++place) {
      if (!paths_.isCounted[place] && callers[place] == 0) {
        order_.push_back(place);
      }
    }
    for (size_t i = 0; i < order_.size(); ++i) {  // NOLINT(modernize-loop-convert): it grows
      ForEachInside(order_[i], [&](uint32_t callee) {
        if (--callers[callee] == 0) {
          order_.push_back(callee);
        }
      });
    }
    return order_.size() == wanted;
  }

  void MultiplyDepths() {
    paths_.activations = 1;
    for (uint32_t place = 0; place < members_.size(); ++place) {
      if (const uint32_t depth = StatedDepth(At(place)); depth != kNoDepth) {
        paths_.activations = MultiplyBounded(paths_.activations, depth);
      }
    }
  }

  void FindHeaviest() {
    paths_.heaviest.assign(members_.size(), 0);
    paths_.next.assign(members_.size(), GroupPaths::kEnd);
    for (size_t i = order_.size(); i-- > 0;) {
      const uint32_t place = order_[i];
      GoOn(place);
      paths_.heaviest[place] = AddBounded(paths_.heaviest[place], paths_.own[place]);
    }
    for (uint32_t place = 0; place < members_.size(); ++place) {
      if (paths_.isCounted[place]) {
        GoOn(place);
      }
    }
  }

  // With the first of the callees that are the heaviest.
  void GoOn(uint32_t place) {
    ForEachInside(place, [&](uint32_t callee) {
      if (paths_.next[place] == GroupPaths::kEnd ||
          paths_.heaviest[callee] > paths_.heaviest[place]) {
        paths_.next[place] = callee;
        paths_.heaviest[place] = paths_.heaviest[callee];
      }
    });
  }

  const StkFunctionTable& table_;
  std::span<const uint32_t> members_;
  const GroupPlaces& places_;
  uint32_t group_;
  GroupPaths paths_;
  std::vector<uint32_t> order_;
};

}  // namespace

GroupPaths FindGroupPaths(const StkFunctionTable& table, std::span<const uint32_t> members,
                          const GroupPlaces& places) {
  return PathSearch(table, members, places).Run();
}

}  // namespace velkor
