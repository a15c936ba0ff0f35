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

using Remark = std::string (*)(const AnalysisResult&, uint32_t function);

std::string Stated(const AnalysisResult& result, uint32_t function) {
  return "calls " + NameList(result, result.ExtraCallees(function));
}

std::string DepthStated(const AnalysisResult& result, uint32_t function) {
  const uint32_t depth = result.Adjustment(function).depth;
  return depth == kNoDepth ? "no depth stated" : "depth " + std::to_string(depth);
}

std::string CalleesStated(const AnalysisResult& result, uint32_t function) {
  return result.ExtraCallees(function).empty() ? "no callees stated" : Stated(result, function);
}

std::string Adjustment(const AnalysisResult& result, uint32_t function) {
  std::string text = result.AdjustmentText(function, AdjustmentStyle::kReport);
  if (!result.ExtraCallees(function).empty()) {
    text += (text.empty() ? "" : ", ") + Stated(result, function);
  }
  return text;
}

std::string Size(const AnalysisResult& result, uint32_t function) {
  return result.TotalText(function);
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

  void Collect(std::span<const uint32_t> (AnalysisResult::*calls)(uint32_t) const) {
    for (uint32_t caller = 0; caller < result_.functions.size(); ++caller) {
      for (const uint32_t callee : (result_.*calls)(caller)) {
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
    output.Write(fmt::format("  {}{}{}\n", result.ShownSpecName(function),
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
        [&](uint32_t function) { return remark(result, function); }, output);
  };
  write("Recursive functions", result.lists.recursive, DepthStated);
  write("Functions with indirect calls", result.lists.indirect, CalleesStated);
  write("Adjusted functions", result.lists.adjusted, Adjustment);
  write("Library functions", result.lists.library, Size);
}

}  // namespace velkor::reports
