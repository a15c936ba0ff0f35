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
  bool isThroughPointers = false;
  for (const uint32_t root : LargestFirst(result)) {
    const bool wasThroughPointers = isThroughPointers;
    isThroughPointers = result.functions[root].IsReachedThroughPointers();
    if (isThroughPointers && !wasThroughPointers) {
      output.Write(fmt::format("{}:\n\n", kThroughPointers));
    }
    rows.WriteFunction(root);
    output.Write("\n");
  }
}

}  // namespace velkor::reports
