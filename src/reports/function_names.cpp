#include "reports/function_names.h"

#include <algorithm>

namespace velkor::reports {
namespace {

constexpr size_t kMostNames = 10;

}  // namespace

std::string NameList(const AnalysisResult& result, std::span<const uint32_t> named,
                     uint64_t count) {
  std::string text;
  for (const uint32_t function : named) {
    if (!text.empty()) {
      text += ", ";
    }
    text += result.ShownSpecName(function);
  }
  if (named.size() < count) {
    text += " and " + std::to_string(count - named.size()) + " more";
  }
  return text;
}

std::string NameList(const AnalysisResult& result, std::span<const uint32_t> functions) {
  return NameList(result, functions.first(std::min(kMostNames, functions.size())),
                  functions.size());
}

}  // namespace velkor::reports
