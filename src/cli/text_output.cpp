#include "cli/text_output.h"

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
  output.Write(fmt::format("Functions  {}, {} of them top-level, {} unknown, {} adjusted\n",
                           functions.Count(), result.roots.size(), functions.UnknownCount(),
                           functions.AdjustedCount()));
}

}  // namespace

void WriteText(const AnalysisResult& result, bool full, ResultOutput& output) {
  WriteHead(result, output);
  WriteChains(result, full, output);
  WriteLists(result, output);
}

}  // namespace velkor
