#include "core/top_level.h"

#include <algorithm>
#include <cstdint>

namespace velkor {

namespace {

// Whatever can reach one member of a component can reach them all, so the conditions are kept for
// components: what holds above one is handed down to the components that it calls.
class TopLevelDecision {
 public:
  TopLevelDecision(const CallGraph& graph, const Components& components,
                   const std::vector<uint32_t>& uncalled)
      : graph_(graph),
        components_(components),
        isCalled_(graph.Count(), true),
        belowPlain_(components.Count(), false),
        belowDecided_(components.Count(), false),
        endOfOldMarks_(components.Count(), 0) {
    for (const uint32_t function : uncalled) {
      isCalled_[function] = false;
    }
  }

  std::vector<uint32_t> Run(const std::vector<uint32_t>& marked) {
    for (const uint32_t function : marked) {
      endOfOldMarks_[components_.of[function]] = function + 1;
    }
    HandDown();
    std::vector<uint32_t> topLevel;
    for (uint32_t function = 0; function < graph_.Count(); ++function) {
      if (IsTopLevel(function)) {
        topLevel.push_back(function);
      }
    }
    return topLevel;
  }

 private:
  // Callers first: components are numbered from the callees up.
  void HandDown() {
    for (uint32_t component = components_.Count(); component-- > 0;) {
      const bool plain = belowPlain_[component] || !components_.recursive[component];
      for (const uint32_t member : components_.Members(component)) {
        for (const uint32_t callee : graph_.Callees(member)) {
          const uint32_t below = components_.of[callee];
          if (below != component) {
            belowPlain_[below] = belowPlain_[below] || plain;
            endOfOldMarks_[below] = std::max(endOfOldMarks_[below], endOfOldMarks_[component]);
          }
        }
      }
    }
  }

  bool IsTopLevel(uint32_t function) {
    if (!isCalled_[function]) {
      return true;
    }
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
          if (!belowDecided_[below]) {
            belowDecided_[below] = true;
            waiting.push_back(below);
          }
        }
      }
    }
  }

  const CallGraph& graph_;
  const Components& components_;
  std::vector<bool> isCalled_;  // of each function: by anything, itself included
  // Of each component, about its members and all that can reach them:
  std::vector<bool> belowPlain_;         // one outside it is not recursive
  std::vector<bool> belowDecided_;       // one was decided to be top-level, recursive
  std::vector<uint32_t> endOfOldMarks_;  // the largest index with an FN_ROOT of before, plus 1
};

}  // namespace

// Below a function that nothing calls, and that therefore is not recursive, nothing is top-level.
std::vector<uint32_t> DecideTopLevel(const CallGraph& graph, const Components& components,
                                     const std::vector<uint32_t>& uncalled,
                                     const std::vector<uint32_t>& marked) {
  if (components.reached == graph.Count()) {
    return uncalled;
  }
  return TopLevelDecision(graph, components, uncalled).Run(marked);
}

}  // namespace velkor
