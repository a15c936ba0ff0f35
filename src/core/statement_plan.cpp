#include "core/statement_plan.h"

#include <algorithm>
#include <utility>

#include "core/detail/cause_graph.h"
#include "core/detail/cause_order.h"

namespace velkor {

namespace {

// A top-level function is free once the last of its causes is taken away.
void CountFreed(const CauseGraph& graph, const std::vector<uint32_t>& order, StatementPlan& plan) {
  std::vector<uint32_t> position(order.size());
  for (uint32_t i = 0; i < order.size(); ++i) {
    position[order[i]] = i;
  }
  std::vector<uint32_t> last(graph.NodeCount(), 0);
  for (uint32_t node = 0; node < graph.NodeCount(); ++node) {
    for (const uint32_t cause : graph.Causes(node)) {
      last[node] = std::max(last[node], position[cause]);
    }
    for (const uint32_t callee : graph.Callees(node)) {
      last[node] = std::max(last[node], last[callee]);
    }
    plan.steps[last[node]].frees += graph.Entries(node);
    plan.unbounded += graph.Entries(node);
  }
}

StatementPlan Plan(CauseGraph graph, PlanningEffort effort) {
  const std::vector<uint32_t> order = CauseOrder(graph, effort).Find();
  StatementPlan plan;
  plan.steps.reserve(order.size());
  for (const uint32_t cause : order) {
    plan.steps.push_back(std::move(graph.Steps()[cause]));
  }
  CountFreed(graph, order, plan);
  return plan;
}

}  // namespace

StatementPlan PlanStatements(const StkFunctionTable& table, const StkBounds& bounds,
                             PlanningEffort effort) {
  return Plan(CauseGraph(table, bounds, {}), effort);
}

StatementPlan PlanStatementsFor(const StkFunctionTable& table, const StkBounds& bounds,
                                uint32_t function, PlanningEffort effort) {
  return Plan(CauseGraph(table, bounds, function), effort);
}

}  // namespace velkor
