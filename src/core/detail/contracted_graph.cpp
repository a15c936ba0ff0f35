#include "core/detail/contracted_graph.h"

#include <utility>

#include "core/detail/smallest_cut.h"

namespace velkor {

ContractedGraph::ContractedGraph(const CallGraph& graph, const std::vector<bool>& preferred)
    : preferred_(preferred), nodes_(graph.Count()), aliveCount_(graph.Count()) {
  for (uint32_t function = 0; function < graph.Count(); ++function) {
    nodes_[function].function = function;
    for (const uint32_t callee : graph.Callees(function)) {
      AddCall(function, callee);
    }
  }
  for (uint32_t node = graph.Count(); node-- > 0;) {
    Touch(node);
  }
}

std::vector<uint32_t> ContractedGraph::Choose() {
  Shrink();
  while (aliveCount_ > SmallestCut::kMost) {
    ChooseBest();
    Shrink();
  }
  ChooseAmongFew();
  return std::move(chosen_);
}

void ContractedGraph::Shrink() {
  while (!waiting_.empty()) {
    const uint32_t node = waiting_.back();
    waiting_.pop_back();
    nodes_[node].waiting = false;
    if (nodes_[node].alive) {
      Examine(node);
    }
  }
}

void ContractedGraph::Examine(uint32_t node) {
  const Node& examined = nodes_[node];
  if (examined.callees.contains(node)) {
    ChooseNode(node);
  } else if (examined.callers.empty() || examined.callees.empty()) {
    Remove(node);
  } else if (examined.callers.size() == 1) {
    MergeInto(node, *examined.callers.begin());
  } else if (examined.callees.size() == 1) {
    MergeInto(node, *examined.callees.begin());
  } else {
    ranks_.push(RankOf(node));
  }
}

ContractedGraph::Rank ContractedGraph::RankOf(uint32_t node) const {
  const Node& ranked = nodes_[node];
  return {uint64_t{ranked.callers.size()} * ranked.callees.size(), preferred_[ranked.function],
          ~ranked.function, node};
}

void ContractedGraph::ChooseNode(uint32_t node) {
  chosen_.push_back(nodes_[node].function);
  Remove(node);
}

void ContractedGraph::ChooseBest() {
  const Rank best = ranks_.top();
  ranks_.pop();
  const uint32_t node = std::get<3>(best);
  if (nodes_[node].alive && RankOf(node) == best) {
    ChooseNode(node);
  }
}

void ContractedGraph::ChooseAmongFew() {
  std::vector<uint32_t> left;
  for (uint32_t node = 0; node < nodes_.size(); ++node) {
    if (nodes_[node].alive) {
      left.push_back(node);
    }
  }
  SmallestCut smallest(static_cast<uint32_t>(left.size()));
  for (uint32_t i = 0; i < left.size(); ++i) {
    const Node& node = nodes_[left[i]];
    if (preferred_[node.function]) {
      smallest.Prefer(i);
    }
    for (uint32_t j = 0; j < left.size(); ++j) {
      if (node.callees.contains(left[j])) {
        smallest.AddCall(i, j);
      }
    }
  }
  for (const uint32_t i : smallest.Find()) {
    chosen_.push_back(nodes_[left[i]].function);
  }
}

void ContractedGraph::Remove(uint32_t node) {
  for (const uint32_t callee : std::exchange(nodes_[node].callees, {})) {
    nodes_[callee].callers.erase(node);
    Touch(callee);
  }
  for (const uint32_t caller : std::exchange(nodes_[node].callers, {})) {
    nodes_[caller].callees.erase(node);
    Touch(caller);
  }
  nodes_[node].alive = false;
  --aliveCount_;
}

// The one with fewer calls goes, so that a call moves a few times at most.
void ContractedGraph::MergeInto(uint32_t node, uint32_t target) {
  const auto calls = [this](uint32_t each) {
    return nodes_[each].callers.size() + nodes_[each].callees.size();
  };
  const uint32_t function = nodes_[target].function;
  // The only way from one to the other; one in the other direction becomes a call of itself.
  const bool calledByTarget = nodes_[node].callers.size() == 1;
  const auto [caller, callee] = calledByTarget ? std::pair(target, node) : std::pair(node, target);
  nodes_[caller].callees.erase(callee);
  nodes_[callee].callers.erase(caller);
  const bool targetGoes = calls(target) < calls(node);
  const auto [goes, stays] = targetGoes ? std::pair(target, node) : std::pair(node, target);
  MoveCalls(goes, stays);
  nodes_[goes].alive = false;
  --aliveCount_;
  nodes_[stays].function = function;
  Touch(stays);
}

void ContractedGraph::MoveCalls(uint32_t from, uint32_t to) {
  for (const uint32_t callee : std::exchange(nodes_[from].callees, {})) {
    nodes_[callee].callers.erase(from);
    AddCall(to, callee == from ? to : callee);
    Touch(callee);
  }
  for (const uint32_t caller : std::exchange(nodes_[from].callers, {})) {
    nodes_[caller].callees.erase(from);
    AddCall(caller, to);
    Touch(caller);
  }
}

void ContractedGraph::AddCall(uint32_t caller, uint32_t callee) {
  nodes_[caller].callees.insert(callee);
  nodes_[callee].callers.insert(caller);
}

void ContractedGraph::Touch(uint32_t node) {
  if (!nodes_[node].waiting) {
    nodes_[node].waiting = true;
    waiting_.push_back(node);
  }
}

}  // namespace velkor
