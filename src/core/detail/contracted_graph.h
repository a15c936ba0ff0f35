#pragma once

#include <cstdint>
#include <queue>
#include <set>
#include <tuple>
#include <vector>

#include "core/detail/call_graph.h"

namespace velkor {

// A graph that shrinks while functions are chosen until it holds no cycle: what is on no cycle
// goes, a function with a single caller or a single callee is merged into that one, which every
// cycle through the merged one passes, and a function that comes to call itself is chosen. Used
// once.
class ContractedGraph {
 public:
  ContractedGraph(const CallGraph& graph, const std::vector<bool>& preferred);

  // Chosen functions that every cycle passes, in the order of the choice.
  std::vector<uint32_t> Choose();

 private:
  // Stands for one function, and perhaps for others that were merged into it.
  struct Node {
    uint32_t function = 0;
    bool alive = true;
    bool waiting = false;
    std::set<uint32_t> callers;
    std::set<uint32_t> callees;
  };
  // Ways through a node, whether it is preferred, the function counted down: the largest is chosen.
  using Rank = std::tuple<uint64_t, bool, uint32_t, uint32_t>;

  void Shrink();
  void Examine(uint32_t node);
  void ChooseNode(uint32_t node);
  void ChooseBest();
  void ChooseAmongFew();
  Rank RankOf(uint32_t node) const;
  void Remove(uint32_t node);
  void MergeInto(uint32_t node, uint32_t target);
  void MoveCalls(uint32_t from, uint32_t to);
  void AddCall(uint32_t caller, uint32_t callee);
  void Touch(uint32_t node);

  const std::vector<bool>& preferred_;
  std::vector<Node> nodes_;
  std::vector<uint32_t> waiting_;    // to be examined
  std::priority_queue<Rank> ranks_;  // some of them of before
  uint32_t aliveCount_ = 0;
  std::vector<uint32_t> chosen_;
};

}  // namespace velkor
