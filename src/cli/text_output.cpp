#include "cli/text_output.h"

#include <algorithm>
#include <fmt/format.h>

#include "cli/chain_output.h"
#include "cli/list_output.h"
#include "cli/terminal_text.h"

namespace velkor {
namespace {

void WriteHead(const AnalysisResult& result, ResultOutput& output) {
  const StkFunctionTable& functions = result.functions;
  output.Write(fmt::format("Project    {}\n", OneLine(result.Utf8(result.project))));
  output.Write(
      fmt::format("Compiler   {}\n", result.compilerVersion
                                         ? result.compilerName + " V" + *result.compilerVersion
                                         : "unknown: no module was read"));
  const auto uncertain =
      std::count_if(result.roots.begin(), result.roots.end(),
                    [&result](const StkFunction* root) { return !result.IsComplete(*root); });
  output.Write(
      fmt::format("Functions  {}, {} of them top-level\n", functions.Count(), result.roots.size()));
  if (uncertain > 0) {
    output.Write(fmt::format("Uncertain  {} of the top-level ones: their totals are lower bounds\n",
                             uncertain));
  }
}

}  // namespace

void WriteText(const AnalysisResult& result, bool full, ResultOutput& output) {
  WriteHead(result, output);
  WriteChains(result, full, output);
  WriteLists(result, output);
}

}  // namespace velkor
