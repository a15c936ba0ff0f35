#include "core/detail/cause_sets.h"

#include <algorithm>

namespace velkor {

CauseSets::CauseSets(const CauseGraph& graph, uint64_t effort)
    : many_(std::max<size_t>(kLeastMany,
                             effort / (uint64_t{1} + graph.NodeCount() + graph.CallCount()))),
      metBy_(graph.CauseCount(), kMany) {
  sets_.reserve(graph.NodeCount());
  for (uint32_t node = 0; node < graph.NodeCount(); ++node) {
    sets_.push_back(Collect(graph, node));
  }
}

CauseSets::Set CauseSets::Collect(const CauseGraph& graph, uint32_t node) {
  met_.clear();
  Meet(graph.Causes(node), node);
  for (const uint32_t callee : graph.Callees(node)) {
    Meet(Of(callee), node);
    if (AreMany(callee) || met_.size() >= many_) {
      return {0, kMany};
    }
  }
  for (const uint32_t callee : graph.Callees(node)) {
    if (sets_[callee].count == met_.size()) {
      return sets_[callee];
    }
  }
  std::ranges::sort(met_);
  const Set set{causes_.size(), static_cast<uint32_t>(met_.size())};
  causes_.insert(causes_.end(), met_.begin(), met_.end());
  return set;
}

void CauseSets::Meet(std::span<const uint32_t> causes, uint32_t node) {
  for (const uint32_t cause : causes) {
    if (metBy_[cause] != node) {
      metBy_[cause] = node;
      met_.push_back(cause);
    }
  }
}

}  // namespace velkor
