#include "reports/head_output.h"

#include <algorithm>
#include <fmt/format.h>

#include "reports/terminal_text.h"

namespace velkor::reports {
namespace {

bool IsBounded(const AnalysedFunction& function) {
  return function.state == BoundState::kBounded;
}

bool IsBelowItsBound(const AnalysedFunction& function) {
  return IsBounded(function) && !function.complete;
}

size_t CountRoots(const AnalysisResult& result, bool (*holds)(const AnalysedFunction&)) {
  return static_cast<size_t>(std::ranges::count_if(
      result.roots, [&](uint32_t root) { return holds(result.functions[root]); }));
}

// ", uart.asm, main.asm not whole"; nothing of an empty list.
std::string NotRead(const std::vector<std::string>& modules, std::string_view why) {
  constexpr size_t kMostNamed = 4;
  std::string names;
  for (size_t i = 0; i < std::min(modules.size(), kMostNamed); ++i) {
    names += i == 0 ? "; " : ", ";
    names += OneLine(modules[i].substr(modules[i].find_last_of("/\\") + 1));
  }
  if (modules.size() > kMostNamed) {
    names += fmt::format(" and {} more", modules.size() - kMostNamed);
  }
  return names.empty() ? names : fmt::format("{} {}", names, why);
}

}  // namespace

void WriteHead(const AnalysisResult& result, ResultOutput& output) {
  output.Write(fmt::format("Project    {}\n", OneLine(result.project)));
  output.Write(
      fmt::format("Compiler   {}\n", result.compilerVersion
                                         ? result.compilerName + " V" + *result.compilerVersion
                                     : result.inputs.read != 0 ? result.compilerName
                                                               : "unknown: no module was read"));
  const AnalysisInputs& inputs = result.inputs;
  output.Write(fmt::format("Modules    {} of {} read{}{}\n", inputs.read, inputs.Count(),
                           NotRead(inputs.missing, "missing"),
                           NotRead(inputs.notWhole, "not whole")));
  output.Write(fmt::format("Functions  {}, {} of them top-level\n", result.functions.size(),
                           result.roots.size()));
  output.Write(fmt::format("Bounded    {} of the top-level ones\n", CountRoots(result, IsBounded)));
  if (const size_t low = CountRoots(result, IsBelowItsBound); low > 0) {
    output.Write(fmt::format("Too low    the totals of {} of them: below the bound\n", low));
  }
}

}  // namespace velkor::reports
