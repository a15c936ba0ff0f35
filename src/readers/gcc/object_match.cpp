#include "readers/gcc/object_match.h"

#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "readers/gcc/text_ends.h"

namespace velkor {
namespace {

class ObjectMatcher {
 public:
  ObjectMatcher(const CallGraphFile& graph, const ObjectFacts& object)
      : graph_(graph), object_(object) {}

  ObjectMatch Match() {
    MatchNodes();
    for (uint32_t i = 0; i < object_.Functions().size(); ++i) {
      if (NodeOfFunction(i) == ObjectMatch::kNone) {
        match_.functionsWithoutNode.push_back(i);
      }
    }
    for (const CallGraphEdge& edge : graph_.edges) {
      edges_[edge.sourceNode].insert(CanonicalName(SymbolOf(graph_, edge.target)));
    }
    for (uint32_t i = 0; i < object_.Calls().size(); ++i) {
      Explain(i);
    }
    return std::move(match_);
  }

 private:
  void MatchNodes() {
    match_.functionOfNode.assign(graph_.nodes.size(), ObjectMatch::kNone);
    for (uint32_t i = 0; i < graph_.nodes.size(); ++i) {
      const CallGraphNode& node = graph_.nodes[i];
      if (node.shape != CallGraphNode::Shape::kEllipse) {
        match_.functionOfNode[i] = object_.Find(node.symbol);
        nodes_.emplace(CanonicalName(node.symbol), i);
      }
    }
  }

  // One name for all aliases and for the parts of a function.
  std::string_view CanonicalName(std::string_view name) const {
    TakeSuffix(name, ".cold");
    const uint32_t function = object_.Find(name);
    return function == ObjectCall::kNoFunction
               ? name
               : object_.Functions()[object_.FirstAlias(function)].name;
  }

  uint32_t NodeOfFunction(uint32_t function) const {
    if (function == ObjectCall::kNoFunction) {
      return ObjectMatch::kNone;
    }
    const auto found = nodes_.find(CanonicalName(object_.Functions()[function].name));
    return found == nodes_.end() ? ObjectMatch::kNone : found->second;
  }

  void Explain(uint32_t number) {
    const ObjectCall& call = object_.Calls()[number];
    const uint32_t node = NodeOfFunction(call.caller);
    const std::string_view target = CanonicalName(call.target);
    if (call.isJump && call.caller != ObjectCall::kNoFunction &&
        target == CanonicalName(object_.Functions()[call.caller].name)) {
      return;  // into the function's part elsewhere, or back
    }
    const auto edges = edges_.find(node);
    if (node == ObjectMatch::kNone || edges == edges_.end() || !edges->second.contains(target)) {
      match_.hiddenCalls.push_back({node, number});
    }
  }

  const CallGraphFile& graph_;
  const ObjectFacts& object_;
  ObjectMatch match_;
  std::unordered_map<std::string_view, uint32_t> nodes_;                      // by canonical name
  std::unordered_map<uint32_t, std::unordered_set<std::string_view>> edges_;  // targets of a node
};

}  // namespace

ObjectMatch MatchObject(const CallGraphFile& graph, const ObjectFacts& object) {
  return ObjectMatcher(graph, object).Match();
}

}  // namespace velkor
