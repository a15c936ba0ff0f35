#include "reports/chain_output.h"

#include <algorithm>
#include <fmt/format.h>
#include <functional>

#include "reports/explanation_rows.h"

namespace velkor::reports {

std::vector<uint32_t> LargestFirst(const AnalysisResult& result) {
  std::vector<uint32_t> roots = result.roots;
  std::ranges::stable_sort(roots, std::greater(), [&result](uint32_t function) {
    return result.functions[function].known;
  });
  return roots;
}

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
  ExplanationRows rows(result, full, output);
  rows.WriteHeading("Bound");
  for (const uint32_t root : LargestFirst(result)) {
    rows.WriteFunction(root);
    output.Write("\n");
  }
}

}  // namespace velkor::reports
