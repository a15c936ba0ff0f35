#include "reports/gate/finding_order.h"

#include <algorithm>
#include <array>
#include <tuple>

namespace velkor::reports {
namespace {

constexpr std::array<std::string_view, 4> kWorstRules = {"over-budget", "headroom", "regression",
                                                         "no-bound"};

}  // namespace

std::vector<const Finding*> WorstFirst(const GateReport& report) {
  std::vector<const Finding*> order;
  order.reserve(report.findings.size());
  for (const Finding& finding : report.findings) {
    order.push_back(&finding);
  }
  std::ranges::stable_sort(order, {}, [](const Finding* finding) {
    const auto rank = std::ranges::find(kWorstRules, finding->rule) - kWorstRules.begin();
    return std::tuple(finding->severity, rank, UINT64_MAX - finding->weight);
  });
  return order;
}

}  // namespace velkor::reports
