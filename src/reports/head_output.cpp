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

std::string CompilerText(const AnalysisResult& result) {
  if (result.compilerVersion) {
    return OneLine(result.compilerName + " V" + *result.compilerVersion);
  }
  return result.inputs.read != 0 ? OneLine(result.compilerName) : "unknown: no module was read";
}

}  // namespace

std::vector<HeadRow> HeadRows(const AnalysisResult& result) {
  const AnalysisInputs& inputs = result.inputs;
  std::vector<HeadRow> rows = {
      {"Project", OneLine(result.project)},
      {"Compiler", CompilerText(result)},
      {"Modules",
       fmt::format("{} of {} read{}{}", inputs.read, inputs.Count(),
                   NotRead(inputs.missing, "missing"), NotRead(inputs.notWhole, "not whole"))},
      {"Functions",
       fmt::format("{}, {} of them top-level", result.functions.size(), result.roots.size())},
      {"Bounded", fmt::format("{} of the top-level ones", CountRoots(result, IsBounded))}};
  if (const size_t low = CountRoots(result, IsBelowItsBound); low > 0) {
    rows.push_back({"Too low", fmt::format("the totals of {} of them: below the bound", low)});
  }
  return rows;
}

void WriteHead(const AnalysisResult& result, ResultOutput& output) {
  for (const HeadRow& row : HeadRows(result)) {
    output.Write(fmt::format("{:<11}{}\n", row.label, row.text));
  }
}

}  // namespace velkor::reports
