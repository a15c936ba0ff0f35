#include "core/detail/cycle_cut.h"

#include <algorithm>
#include <iterator>

#include "core/detail/components.h"
#include "core/detail/contracted_graph.h"
#include "core/detail/smallest_cut.h"

namespace velkor {

namespace {

// One component as a graph of its own, whose functions are the places among its members.
class ComponentCut {
 public:
  // places: one for each function of the graph, of which this writes and reads those of its
  // members.
  ComponentCut(const CallGraph& graph, const Components& components, uint32_t component,
               const std::vector<bool>& preferred, std::vector<uint32_t>& places)
      : members_(components.Members(component).begin(), components.Members(component).end()) {
    std::ranges::sort(members_);
    for (uint32_t place = 0; place < members_.size(); ++place) {
      places[members_[place]] = place;
    }
    std::vector<uint32_t> callees;
    for (const uint32_t member : members_) {
      callees.clear();
      for (const uint32_t callee : graph.Callees(member)) {
        if (components.of[callee] == component) {
          callees.push_back(places[callee]);
        }
      }
      calls_.Append(callees);
      preferred_.push_back(preferred[member]);
    }
  }

  void AppendTo(std::vector<uint32_t>& cut) const {
    for (const uint32_t place : members_.size() <= SmallestCut::kMost ? Smallest() : Small()) {
      cut.push_back(members_[place]);
    }
  }

 private:
  // Of more functions than these nothing is contracted, which takes much memory.
  static constexpr size_t kMostContracted = size_t{1} << 16;
  // Calls that are looked at to find out which functions are not needed.
  static constexpr uint64_t kMostEffort = 20'000'000;

  std::vector<uint32_t> Smallest() const {
    SmallestCut smallest(calls_.Count());
    for (uint32_t place = 0; place < calls_.Count(); ++place) {
      for (const uint32_t callee : calls_.Callees(place)) {
        smallest.AddCall(place, callee);
      }
      if (preferred_[place]) {
        smallest.Prefer(place);
      }
    }
    return smallest.Find();
  }

  std::vector<uint32_t> Small() const {
    const std::vector<uint32_t> chosen = members_.size() <= kMostContracted
                                             ? ContractedGraph(calls_, preferred_).Choose()
                                             : CameBackTo();
    std::vector<bool> isChosen(calls_.Count(), false);
    for (const uint32_t place : chosen) {
      isChosen[place] = true;
    }
    std::vector<uint32_t> visitedFor(calls_.Count(), calls_.Count());
    uint64_t effort = 0;
    for (size_t i = chosen.size(); i-- > 0 && effort < kMostEffort;) {
      isChosen[chosen[i]] = IsOnCycle(chosen[i], isChosen, visitedFor, effort);
    }
    std::vector<uint32_t> needed;
    std::ranges::copy_if(chosen, std::back_inserter(needed),
                         [&](uint32_t place) { return isChosen[place]; });
    return needed;
  }

  // The functions that a walk along the calls comes back to while it is still below them: every
  // cycle has one.
  std::vector<uint32_t> CameBackTo() const {
    enum class State : uint8_t { kNew, kOpen, kChosen, kDone };
    std::vector<State> states(calls_.Count(), State::kNew);
    std::vector<uint32_t> next(calls_.Count(), 0);  // of the callees
    std::vector<uint32_t> open{0};
    std::vector<uint32_t> chosen;
    states[0] = State::kOpen;
    while (!open.empty()) {
      const uint32_t place = open.back();
      const auto callees = calls_.Callees(place);
      if (next[place] == callees.size()) {
        states[place] = State::kDone;
        open.pop_back();
        continue;
      }
      const uint32_t callee = callees[next[place]++];
      if (states[callee] == State::kNew) {
        states[callee] = State::kOpen;
        open.push_back(callee);
      } else if (states[callee] == State::kOpen) {
        states[callee] = State::kChosen;
        chosen.push_back(callee);
      }
    }
    return chosen;
  }

  // Whether calls lead from the place back to it past what is chosen.
  bool IsOnCycle(uint32_t start, const std::vector<bool>& isChosen,
                 std::vector<uint32_t>& visitedFor, uint64_t& effort) const {
    std::vector<uint32_t> open{start};
    while (!open.empty()) {
      const uint32_t place = open.back();
      open.pop_back();
      for (const uint32_t callee : calls_.Callees(place)) {
        ++effort;
        if (callee == start) {
          return true;
        }
        if (!isChosen[callee] && visitedFor[callee] != start) {
          visitedFor[callee] = start;
          open.push_back(callee);
        }
      }
    }
    return false;
  }

  std::vector<uint32_t> members_;
  CallGraph calls_;
  std::vector<bool> preferred_;
};

}  // namespace

std::vector<uint32_t> FindCycleCut(const CallGraph& graph, const std::vector<bool>& preferred) {
  const Components components = FindComponents(graph);
  std::vector<uint32_t> places(graph.Count());
  std::vector<uint32_t> cut;
  for (uint32_t component = 0; component < components.Count(); ++component) {
    if (components.recursive[component]) {
      ComponentCut(graph, components, component, preferred, places).AppendTo(cut);
    }
  }
  std::ranges::sort(cut);
  return cut;
}

}  // namespace velkor
