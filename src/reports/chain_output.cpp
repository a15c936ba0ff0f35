#include "reports/chain_output.h"

#include <fmt/format.h>

#include "reports/entry_ranking.h"
#include "reports/explanation_rows.h"

namespace velkor::reports {

void WriteChains(const AnalysisResult& result, bool full, ResultOutput& output) {
  if (result.roots.empty()) {
    output.Write("\nThere are no functions.\n");
    return;
  }
  output.Write(fmt::format(
      "\nTop-level functions, largest bound first, each with the calls whose bytes add up to it.\n"
      "{}: at least, for what is named beneath.  *: recursive.  &: calls indirectly.\n"
      "[ ]: not defined in the project.  +: adjustment or library size.\n\n",
      result.atLeast));
  using Shown = ExplanationRows::Shown;
  ExplanationRows rows(result, full ? Shown::kAll : Shown::kEnds, output);
  rows.WriteHeading("Bound");
  const auto isThroughPointers = [&result](uint32_t root) {
    return result.functions[root].IsReachedThroughPointers();
  };
  std::vector<uint32_t> roots = LargestFirst(result);
  const auto throughPointers = std::ranges::stable_partition(roots, std::not_fn(isThroughPointers));
  for (const uint32_t& root : roots) {
    if (!throughPointers.empty() && &root == &throughPointers.front()) {
      output.Write("Reached through pointers only:\n\n");
    }
    rows.WriteFunction(root);
    output.Write("\n");
  }
}

}  // namespace velkor::reports
