#include "reports/list_output.h"

#include <fmt/format.h>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "reports/function_names.h"

namespace velkor::reports {
namespace {

using Remark = std::string (*)(const AnalysisResult&, const AnalysedFunction&);

std::string Stated(const AnalysisResult& result, const AnalysedFunction& function) {
  return "calls " + NameList(result, result.ExtraCallees(function));
}

std::string DepthStated(const AnalysisResult&, const AnalysedFunction& function) {
  return function.depth == kNoDepth ? "no depth stated" : "depth " + std::to_string(function.depth);
}

std::string CalleesStated(const AnalysisResult& result, const AnalysedFunction& function) {
  return function.extraCalleeCount == 0 ? "no callees stated" : Stated(result, function);
}

std::string Adjustment(const AnalysisResult& result, const AnalysedFunction& function) {
  std::string text(result.Text(function.adjustmentReport));
  if (function.extraCalleeCount != 0) {
    text += (text.empty() ? "" : ", ") + Stated(result, function);
  }
  return text;
}

std::string Size(const AnalysisResult& result, const AnalysedFunction& function) {
  return std::string(result.Text(function.totalText));
}

// The callers of the unknown functions, of each as many as are named.
class UnknownCallers {
 public:
  explicit UnknownCallers(const AnalysisResult& result) : result_(result) {
    for (const uint32_t function : result.lists.unknown) {
      callers_.try_emplace(function);
    }
    if (!callers_.empty()) {
      Collect(&AnalysisResult::Callees);
      Collect(&AnalysisResult::ExtraCallees);
    }
  }

  std::string Remark(uint32_t function) const {
    const Callers& callers = callers_.at(function);
    return callers.count == 0 ? "" : "called by " + NameList(result_, callers.named, callers.count);
  }

 private:
  static constexpr size_t kMostNamed = 4;

  struct Callers {
    std::vector<uint32_t> named;
    uint64_t count = 0;
  };

  void Collect(std::span<const uint32_t> (AnalysisResult::*calls)(const AnalysedFunction&) const) {
    for (uint32_t caller = 0; caller < result_.functions.size(); ++caller) {
      for (const uint32_t callee : (result_.*calls)(result_.functions[caller])) {
        if (const AnalysedFunction& called = result_.functions[callee];
            called.IsUnknown() && !called.adjusted) {
          Callers& callers = callers_[callee];
          ++callers.count;
          if (callers.named.size() < kMostNamed) {
            callers.named.push_back(caller);
          }
        }
      }
    }
  }

  const AnalysisResult& result_;
  std::unordered_map<uint32_t, Callers> callers_;
};

template <typename RemarkOf>
void WriteSection(const AnalysisResult& result, std::string_view title,
                  const std::vector<uint32_t>& functions, RemarkOf remarkOf, ResultOutput& output) {
  if (functions.empty()) {
    output.Write(fmt::format("{}: none\n", title));
    return;
  }
  output.Write(fmt::format("{}: {}\n", title, functions.size()));
  for (const uint32_t function : functions) {
    const std::string remark = remarkOf(function);
    output.Write(fmt::format("  {}{}{}\n", ShownName(result, result.functions[function].specName),
                             remark.empty() ? "" : "  ", remark));
  }
}

}  // namespace

void WriteLists(const AnalysisResult& result, ResultOutput& output) {
  const UnknownCallers callers(result);
  WriteSection(
      result, "Unknown functions", result.lists.unknown,
      [&](uint32_t function) { return callers.Remark(function); }, output);
  const auto write = [&](std::string_view title, const std::vector<uint32_t>& functions,
                         Remark remark) {
    WriteSection(
        result, title, functions,
        [&](uint32_t function) { return remark(result, result.functions[function]); }, output);
  };
  write("Recursive functions", result.lists.recursive, DepthStated);
  write("Functions with indirect calls", result.lists.indirect, CalleesStated);
  write("Adjusted functions", result.lists.adjusted, Adjustment);
  write("Library functions", result.lists.library, Size);
}

}  // namespace velkor::reports
