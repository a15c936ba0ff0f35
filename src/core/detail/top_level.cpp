#include "core/detail/top_level.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace velkor {

namespace {

// Whatever can reach one member of a component can reach them all, so the conditions are kept for
// components: what holds above one is handed down to the components that it calls.
//
// Below a function that nothing calls, and that therefore is not recursive, nothing is top-level.
// So only the components that no such function leads to are looked at; what can reach these is
// among them.
class TopLevelDecision {
 public:
  TopLevelDecision(const CallGraph& graph, const Components& components)
      : graph_(graph),
        components_(components),
        belowPlain_(components.Count(), false),
        belowDecided_(components.Count(), false),
        endOfOldMarks_(components.Count(), 0) {}

  // The top-level functions among the recursive ones, ascending.
  std::vector<uint32_t> Run(const std::vector<uint32_t>& marked) {
    for (const uint32_t function : marked) {
      endOfOldMarks_[components_.of[function]] = function + 1;
    }
    HandDown();
    const uint32_t first = components_.firstMember[components_.belowStarts];
    std::vector<uint32_t> candidates(components_.members.begin() + first,
                                     components_.members.end());
    std::ranges::sort(candidates);
    std::vector<uint32_t> topLevel;
    for (const uint32_t function : candidates) {
      if (IsTopLevel(function)) {
        topLevel.push_back(function);
      }
    }
    return topLevel;
  }

 private:
  // Callers first: components are numbered from the callees up.
  void HandDown() {
    for (uint32_t component = components_.Count(); component-- > components_.belowStarts;) {
      const bool plain = belowPlain_[component] || !components_.recursive[component];
      for (const uint32_t member : components_.Members(component)) {
        for (const uint32_t callee : graph_.Callees(member)) {
          const uint32_t below = components_.of[callee];
          if (below != component && below >= components_.belowStarts) {
            belowPlain_[below] = belowPlain_[below] || plain;
            endOfOldMarks_[below] = std::max(endOfOldMarks_[below], endOfOldMarks_[component]);
          }
        }
      }
    }
  }

  bool IsTopLevel(uint32_t function) {
    const uint32_t component = components_.of[function];
    if (!components_.recursive[component] || belowPlain_[component] || belowDecided_[component] ||
        endOfOldMarks_[component] > function + 1) {
      return false;
    }
    MarkBelow(component);
    return true;
  }

  // Each component is marked once over the whole decision. Below a top-level function that is not
  // recursive nothing needs the mark: belowPlain_ holds there.
  void MarkBelow(uint32_t start) {
    belowDecided_[start] = true;
    std::vector<uint32_t> waiting{start};
    while (!waiting.empty()) {
      const uint32_t component = waiting.back();
      waiting.pop_back();
      for (const uint32_t member : components_.Members(component)) {
        for (const uint32_t callee : graph_.Callees(member)) {
          const uint32_t below = components_.of[callee];
          if (below >= components_.belowStarts && !belowDecided_[below]) {
            belowDecided_[below] = true;
            waiting.push_back(below);
          }
        }
      }
    }
  }

  const CallGraph& graph_;
  const Components& components_;
  // Of each component, about its members and all that can reach them:
  std::vector<bool> belowPlain_;         // one outside it is not recursive
  std::vector<bool> belowDecided_;       // one was decided to be top-level, recursive
  std::vector<uint32_t> endOfOldMarks_;  // the largest index with an FN_ROOT of before, plus 1
};

}  // namespace

std::vector<uint32_t> DecideTopLevel(const CallGraph& graph, const Components& components,
                                     const std::vector<uint32_t>& uncalled,
                                     const std::vector<uint32_t>& marked) {
  std::vector<uint32_t> topLevel;
  std::ranges::merge(uncalled, TopLevelDecision(graph, components).Run(marked),
                     std::back_inserter(topLevel));
  return topLevel;
}

}  // namespace velkor
