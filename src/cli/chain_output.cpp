#include "cli/chain_output.h"

#include <algorithm>
#include <fmt/format.h>

#include "cli/function_names.h"
#include "cli/terminal_text.h"
#include "cli/uncertainty.h"
#include "core/function_text.h"
#include "core/maximum_chain.h"

namespace velkor {
namespace {

constexpr size_t kSizeWidth = 10;
constexpr size_t kShownAtStart = 30;
constexpr size_t kShownAtEnd = 10;
constexpr size_t kDeepestIndentation = 40;  // levels: a line does not grow without end
constexpr size_t kMostSteps = 5'000'000;    // functions of all chains together

std::string Padded(const std::string& text) {
  const size_t length = CharacterCount(text);
  return std::string(length < kSizeWidth ? kSizeWidth - length : 0, ' ') + text;
}

class ChainOutput {
 public:
  ChainOutput(const AnalysisResult& result, bool full, ResultOutput& output)
      : result_(result),
        full_(full),
        output_(output),
        chains_(result.functions),
        search_(result),
        atLeast_(result.codePage.FromUtf8("≥") ? "≥" : ">=") {}

  void Write() {
    if (result_.roots.empty()) {
      output_.Write("\nThere are no functions.\n");
      return;
    }
    output_.Write(fmt::format(
        "\nTop-level functions, largest total first, each with the calls that take it.\n"
        "{}: at least, for what is named beneath.  *: recursive.  &: calls indirectly.\n"
        "[ ]: not defined in the project.  +: adjustment or library size.\n\n",
        atLeast_));
    output_.Write(fmt::format("{}{}  {}\n", Padded("Total"), Padded("Frame"), "Function"));
    for (StkFunction* root : LargestFirst(result_.roots)) {
      WriteRoot(*root);
    }
  }

 private:
  void WriteRoot(StkFunction& root) {
    if (stepsLeft_ == 0 && !full_) {
      WriteFunction(root, 0, "  (chain not drawn: --full draws it)");
    } else {
      WriteChain(chains_.From(root));
    }
    if (!result_.IsComplete(root)) {
      WriteUncertainty(search_.Below(root));
    }
    output_.Write("\n");
  }

  void WriteChain(const StkFunctionList& chain) {
    const bool cut = !full_ && chain.size() > kShownAtStart + kShownAtEnd;
    for (size_t i = 0; i < chain.size(); ++i) {
      if (!cut || i < kShownAtStart || i + kShownAtEnd >= chain.size()) {
        const bool again = i + 1 == chain.size() && IsRepeated(chain);
        WriteFunction(*chain[i], i, again ? "  (again)" : "");
      } else if (i == kShownAtStart) {
        output_.Write(fmt::format("{}... {} functions left out, --full shows them\n",
                                  Indentation(i), chain.size() - kShownAtStart - kShownAtEnd));
      }
    }
    stepsLeft_ -= std::min(stepsLeft_, chain.size());
  }

  // A chain that runs into recursion ends with a function that it has gone through before.
  static bool IsRepeated(const StkFunctionList& chain) {
    return chain.back()->Is(FN_RECURSIVE) &&
           std::find(chain.begin(), chain.end() - 1, chain.back()) != chain.end() - 1;
  }

  void WriteFunction(const StkFunction& function, size_t depth, std::string_view remark) {
    std::string total = TotalSizeText(function);
    if (!result_.IsComplete(function) && function.totalStackSize != kOverSize && total != "?") {
      total = atLeast_ + total;
    }
    std::string line = Padded(total) + Padded(FrameSizeText(function)) + Indentation(depth);
    line += ShownName(result_, FunctionDisplayName(function, result_.codePage));
    const std::string adjustment = AdjustmentInfoText(function, AdjustmentStyle::kReport);
    if (!adjustment.empty()) {
      line += "  " + adjustment;
    }
    line += remark;
    line += '\n';
    output_.Write(line);
  }

  static std::string Indentation(size_t depth) {
    return std::string(2 + 2 * std::min(depth, kDeepestIndentation), ' ');
  }

  void WriteUncertainty(const Uncertainty& found) {
    WriteReason("unknown", found.unknown, found.cutShort);
    WriteReason("recursive without a depth", found.recursive, found.cutShort);
    WriteReason("indirect calls without callees", found.indirect, found.cutShort);
    if (found.cutShort) {
      output_.Write(std::string(2 * kSizeWidth, ' ') + "  not everything below it was looked at\n");
    }
  }

  void WriteReason(std::string_view reason, const NamedFunctions& functions, bool cutShort) {
    if (functions.count > 0) {
      output_.Write(std::string(2 * kSizeWidth + 2, ' '));
      output_.Write(fmt::format("{}: {}{}\n", reason,
                                NameList(result_, functions.named, functions.count),
                                cutShort ? ", and perhaps more" : ""));
    }
  }

  const AnalysisResult& result_;
  const bool full_;
  ResultOutput& output_;
  MaximumChains chains_;
  UncertaintySearch search_;
  const std::string atLeast_;
  size_t stepsLeft_ = kMostSteps;
};

int Rank(const StkFunction& function) {
  if (function.totalStackSize == kOverSize) {
    return 0;
  }
  return TotalSizeText(function) == "?" ? 2 : 1;
}

}  // namespace

StkFunctionList LargestFirst(StkFunctionList roots) {
  std::stable_sort(roots.begin(), roots.end(),
                   [](const StkFunction* left, const StkFunction* right) {
                     const int leftRank = Rank(*left);
                     const int rightRank = Rank(*right);
                     return leftRank != rightRank ? leftRank < rightRank
                                                  : left->totalStackSize > right->totalStackSize;
                   });
  return roots;
}

void WriteChains(const AnalysisResult& result, bool full, ResultOutput& output) {
  ChainOutput(result, full, output).Write();
}

}  // namespace velkor
