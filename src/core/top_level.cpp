#include "core/top_level.h"

#include <algorithm>
#include <cstdint>

namespace velkor {

namespace {

// Whatever can reach one member of a component can reach them all, so the conditions are kept for
// components: what holds above one is handed down to the components that it calls.
class TopLevelDecision {
 public:
  TopLevelDecision(const StkFunctionTable& table, const CallGraph& graph,
                   const Components& components)
      : table_(table),
        graph_(graph),
        components_(components),
        belowPlain_(components.Count(), false),
        belowDecided_(components.Count(), false),
        endOfOldMarks_(components.Count(), 0) {}

  std::vector<bool> Run() {
    NoteOldMarks();
    HandDown();
    std::vector<bool> topLevel(table_.Count(), false);
    for (const auto& function : table_.Functions()) {
      topLevel[function->index] = IsTopLevel(*function);
    }
    return topLevel;
  }

 private:
  void NoteOldMarks() {
    for (const auto& function : table_.Functions()) {
      if (function->Is(FN_ROOT)) {
        endOfOldMarks_[components_.of[function->index]] = function->index + 1;
      }
    }
  }

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

  bool IsTopLevel(const StkFunction& function) {
    if (function.callers.empty() && function.extraCallers.empty()) {
      return true;
    }
    const uint32_t component = components_.of[function.index];
    if (!components_.recursive[component] || belowPlain_[component] || belowDecided_[component] ||
        endOfOldMarks_[component] > function.index + 1) {
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

  const StkFunctionTable& table_;
  const CallGraph& graph_;
  const Components& components_;
  // Of each component, about its members and all that can reach them:
  std::vector<bool> belowPlain_;         // one outside it is not recursive
  std::vector<bool> belowDecided_;       // one was decided to be top-level, recursive
  std::vector<uint32_t> endOfOldMarks_;  // the largest index with an FN_ROOT of before, plus 1
};

}  // namespace

std::vector<bool> DecideTopLevel(const StkFunctionTable& table, const CallGraph& graph,
                                 const Components& components) {
  return TopLevelDecision(table, graph, components).Run();
}

}  // namespace velkor
