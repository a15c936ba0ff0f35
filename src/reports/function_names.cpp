#include "reports/function_names.h"

#include <algorithm>

#include "core/function_text.h"
#include "reports/terminal_text.h"

namespace velkor::reports {
namespace {

constexpr size_t kLongestName = 500;
constexpr size_t kMostNames = 10;

}  // namespace

std::string ShownName(const AnalysisResult& result, std::string_view name) {
  const size_t kept = result.codePage.CutLength(name, kLongestName);
  std::string shown = OneLine(result.Utf8(name.substr(0, kept)));
  return kept < name.size() ? shown + "..." : shown;
}

std::string NameList(const AnalysisResult& result, const StkFunctionList& named, uint64_t count) {
  std::string text;
  for (const StkFunction* function : named) {
    if (!text.empty()) {
      text += ", ";
    }
    text += ShownName(result, FunctionSpecName(*function, result.codePage));
  }
  if (named.size() < count) {
    text += " and " + std::to_string(count - named.size()) + " more";
  }
  return text;
}

std::string NameList(const AnalysisResult& result, const StkFunctionList& functions) {
  const size_t shown = std::min(kMostNames, functions.size());
  return NameList(
      result,
      StkFunctionList(functions.begin(), functions.begin() + static_cast<std::ptrdiff_t>(shown)),
      functions.size());
}

}  // namespace velkor::reports
