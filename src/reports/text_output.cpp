#include "reports/text_output.h"

#include <algorithm>
#include <fmt/format.h>

#include "reports/chain_output.h"
#include "reports/list_output.h"
#include "reports/note_text.h"
#include "reports/terminal_text.h"

namespace velkor::reports {
namespace {

using BoundTest = bool (*)(const StkBounds&, const StkFunction&);

bool IsBounded(const StkBounds& bounds, const StkFunction& function) {
  return bounds.State(function) == BoundState::kBounded;
}

bool IsBelowItsBound(const StkBounds& bounds, const StkFunction& function) {
  return IsBounded(bounds, function) && !bounds.IsComplete(function);
}

size_t CountRoots(const AnalysisResult& result, BoundTest holds) {
  return static_cast<size_t>(
      std::count_if(result.roots.begin(), result.roots.end(),
                    [&](const StkFunction* root) { return holds(result.bounds, *root); }));
}

void WriteHead(const AnalysisResult& result, ResultOutput& output) {
  const StkFunctionTable& functions = result.functions;
  output.Write(fmt::format("Project    {}\n", OneLine(result.Utf8(result.project))));
  output.Write(
      fmt::format("Compiler   {}\n", result.compilerVersion
                                         ? result.compilerName + " V" + *result.compilerVersion
                                     : result.inputs.read != 0 ? result.compilerName
                                                               : "unknown: no module was read"));
  output.Write(
      fmt::format("Functions  {}, {} of them top-level\n", functions.Count(), result.roots.size()));
  output.Write(fmt::format("Bounded    {} of the top-level ones\n", CountRoots(result, IsBounded)));
  if (const size_t low = CountRoots(result, IsBelowItsBound); low > 0) {
    output.Write(fmt::format("Too low    the totals of {} of them: below the bound\n", low));
  }
}

void WriteNotes(const AnalysisResult& result, ResultOutput& output) {
  if (result.notes.empty()) {
    return;
  }
  output.Write(fmt::format("Notes: {}\n", result.notes.size()));
  for (const StkNote& note : result.notes) {
    output.Write("  " + OneLine(result.Utf8(NoteLine(note))) + "\n");
  }
}

}  // namespace

void WriteText(const AnalysisResult& result, bool full, ResultOutput& output) {
  WriteHead(result, output);
  WriteChains(result, full, output);
  WriteLists(result, output);
  WriteNotes(result, output);
}

}  // namespace velkor::reports
