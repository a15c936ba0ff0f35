#include "reports/list_output.h"

#include <array>
#include <fmt/format.h>
#include <iterator>

#include "core/adjustments.h"
#include "core/function_text.h"
#include "reports/function_names.h"

namespace velkor::reports {
namespace {

using Filter = bool (*)(const StkFunction&);
using Remark = std::string (*)(const AnalysisResult&, const StkFunction&);

struct FunctionSection {
  std::string_view title;
  Filter holds;
  Remark remark;  // what stands behind the name
};

std::string CalledBy(const AnalysisResult& result, const StkFunction& function) {
  constexpr size_t kMostCallers = 4;
  StkFunctionList callers;
  for (const StkFunctionList* list : {&function.callers, &function.extraCallers}) {
    for (StkFunction* caller : *list) {
      if (callers.size() < kMostCallers) {
        callers.push_back(caller);
      }
    }
  }
  const size_t count = function.callers.size() + function.extraCallers.size();
  return count == 0 ? "" : "called by " + NameList(result, callers, count);
}

std::string DepthStated(const AnalysisResult&, const StkFunction& function) {
  const std::string depth = RecursionText(function);
  return depth.empty() ? "no depth stated" : "depth " + depth.substr(1);
}

std::string CalleesStated(const AnalysisResult& result, const StkFunction& function) {
  return function.extraCallees.empty() ? "no callees stated"
                                       : "calls " + NameList(result, function.extraCallees);
}

std::string Adjustment(const AnalysisResult& result, const StkFunction& function) {
  std::string text = AdjustmentInfoText(function, AdjustmentStyle::kReport);
  if (!function.extraCallees.empty()) {
    text += (text.empty() ? "calls " : ", calls ") + NameList(result, function.extraCallees);
  }
  return text;
}

std::string Size(const AnalysisResult&, const StkFunction& function) {
  return TotalSizeText(function);
}

bool HasUnknownTotal(const StkFunction& function) {
  return function.IsUnknown() && !IsAdjusted(function);
}
bool IsRecursive(const StkFunction& function) {
  return function.Is(FN_RECURSIVE);
}
bool CallsIndirectly(const StkFunction& function) {
  return function.Is(FN_INDIRECT_CALL);
}

constexpr FunctionSection kSections[] = {
    {"Unknown functions", HasUnknownTotal, CalledBy},
    {"Recursive functions", IsRecursive, DepthStated},
    {"Functions with indirect calls", CallsIndirectly, CalleesStated},
    {"Adjusted functions", IsAdjusted, Adjustment},
    {"Library functions", IsSystemLibrary, Size},
};

using SectionFunctions = std::array<StkFunctionList, std::size(kSections)>;

// One pass: reading the records of a large program takes longer than asking of each all there is.
SectionFunctions FindFunctions(const StkFunctionTable& table) {
  SectionFunctions found;
  for (StkFunction* function : table.Functions()) {
    for (size_t i = 0; i < found.size(); ++i) {
      if (kSections[i].holds(*function)) {
        found[i].push_back(function);
      }
    }
  }
  return found;
}

void WriteSection(const AnalysisResult& result, const FunctionSection& section,
                  const StkFunctionList& functions, ResultOutput& output) {
  if (functions.empty()) {
    output.Write(fmt::format("{}: none\n", section.title));
    return;
  }
  output.Write(fmt::format("{}: {}\n", section.title, functions.size()));
  for (const StkFunction* function : functions) {
    const std::string remark = section.remark(result, *function);
    output.Write(fmt::format("  {}{}{}\n",
                             ShownName(result, FunctionSpecName(*function, result.codePage)),
                             remark.empty() ? "" : "  ", remark));
  }
}

}  // namespace

void WriteLists(const AnalysisResult& result, ResultOutput& output) {
  SectionFunctions found = FindFunctions(result.functions);
  for (size_t i = 0; i < found.size(); ++i) {
    SortByName(found[i], result.codePage);
    WriteSection(result, kSections[i], found[i], output);
  }
}

}  // namespace velkor::reports
