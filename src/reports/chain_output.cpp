#include "reports/chain_output.h"

#include <algorithm>
#include <fmt/format.h>

#include "reports/explanation_rows.h"

namespace velkor::reports {

StkFunctionList LargestFirst(const AnalysisResult& result) {
  StkFunctionList roots = result.roots;
  std::stable_sort(roots.begin(), roots.end(),
                   [&result](const StkFunction* left, const StkFunction* right) {
                     return result.bounds.Known(*left) > result.bounds.Known(*right);
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
      AtLeast(result.codePage)));
  ExplanationRows rows(result, full, output);
  rows.WriteHeading("Bound");
  for (StkFunction* root : LargestFirst(result)) {
    rows.WriteFunction(*root);
    output.Write("\n");
  }
}

}  // namespace velkor::reports
