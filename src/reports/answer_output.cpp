#include "reports/answer_output.h"

#include <algorithm>
#include <fmt/format.h>
#include <map>
#include <span>
#include <string>

#include "reports/entry_ranking.h"
#include "reports/explanation_rows.h"
#include "reports/head_output.h"
#include "reports/statement_blocks.h"
#include "reports/table_line.h"
#include "reports/terminal_text.h"

namespace velkor::reports {
namespace {

class AnswerOutput {
 public:
  AnswerOutput(const AnalysisResult& result, const StatementPlan& plan, ResultOutput& output)
      : result_(result), plan_(plan), output_(output) {}

  void Write(const AnswerChoice& choice) {
    WriteHead(result_, output_);
    WriteRemarks();
    if (result_.functions.empty()) {
      output_.Write("\nThere are no functions.\n");
      return;
    }
    if (choice.function) {
      output_.Write("\nFunction\n");
      WriteNumbers(std::span(&*choice.function, 1), 1);
      WriteFrames(*choice.function);
      WriteWhy(*choice.function);
    } else {
      WriteLargest(choice.top);
    }
    WriteWanted(!choice.function);
    WriteLegend();
  }

 private:
  // Where they are said in full, the log and the notes follow each other.
  void WriteRemarks() {
    if (!result_.warnings.empty()) {
      output_.Write(fmt::format("Warnings   {}, see the log\n", result_.warnings.size()));
    }
    if (result_.notes.empty()) {
      return;
    }
    std::map<std::string, size_t> rules;
    for (const AnalysisNote& note : result_.notes) {
      ++rules[note.rule];
    }
    std::string text;
    for (const auto& [rule, count] : rules) {
      text += fmt::format("{}{} {}", text.empty() ? "" : ", ", count, rule);
    }
    output_.Write(fmt::format("Notes      {}\n", text));
  }

  void WriteLargest(size_t top) {
    const std::vector<EntryGroup> groups = EntryGroups(result_);
    for (const EntryGroup& group : groups) {
      output_.Write(fmt::format("\n{}\n", group.title));
      WriteNumbers(group.functions, top);
    }
    if (!groups.empty() && top != 0) {
      WriteWhy(groups.front().functions.front());
    }
  }

  void WriteNumbers(std::span<const uint32_t> largestFirst, size_t top) {
    output_.Write(TableLine({"Bound", "Total", "Frame"}, 0, "Function"));
    size_t shown = 0;
    for (const std::span<const uint32_t> alike : LargestNumbers(result_, largestFirst, top)) {
      WriteNumber(alike);
      shown += alike.size();
    }
    if (shown < largestFirst.size()) {
      output_.Write(TableLine({}, 0, fmt::format("... {} more", largestFirst.size() - shown)));
    }
  }

  void WriteNumber(std::span<const uint32_t> alike) {
    const AnalysedFunction& first = result_.functions[alike.front()];
    constexpr size_t kMostNamed = 4;
    std::string names;
    for (const uint32_t function : alike.first(std::min(kMostNamed, alike.size()))) {
      names += names.empty() ? "" : ", ";
      names += CutName(result_.DisplayName(function)) + result_.Distinction(function);
    }
    if (alike.size() > kMostNamed) {
      names += fmt::format(" and {} more", alike.size() - kMostNamed);
    }
    output_.Write(TableLine({Known(first), Range(alike, &AnalysisResult::TotalText),
                             Range(alike, &AnalysisResult::FrameText)},
                            0, names));
  }

  std::string Known(const AnalysedFunction& function) const {
    return (function.state == BoundState::kUnbounded ? result_.atLeast : "") +
           std::to_string(function.known);
  }

  // "10", or "10-90" where they are not alike.
  std::string Range(std::span<const uint32_t> functions,
                    std::string (AnalysisResult::*textOf)(uint32_t) const) const {
    const auto isLess = [](const std::string& left, const std::string& right) {
      return std::pair(left.size(), left) < std::pair(right.size(), right);
    };
    std::string least = (result_.*textOf)(functions.front());
    std::string most = least;
    for (const uint32_t function : functions) {
      const std::string text = (result_.*textOf)(function);
      least = std::min(least, text, isLess);
      most = std::max(most, text, isLess);
    }
    return least == most ? least : least + "-" + most;
  }

  // Where not all that tell of the frame tell the same.
  void WriteFrames(uint32_t function) {
    const ToldFrames* frames = result_.frames.Of(function);
    if (frames == nullptr) {
      return;
    }
    std::string text = fmt::format("Its instructions use {} bytes", frames->instructions);
    if (frames->compiler != 0) {
      text += fmt::format(", its compiler tells {}", frames->compiler);
    }
    if (frames->callFrame != 0) {
      text += fmt::format(", its call frame information {}", frames->callFrame);
    }
    output_.Write(text + ": the largest counts.\n");
  }

  void WriteWhy(uint32_t function) {
    const AnalysedFunction& analysed = result_.functions[function];
    const bool unbounded = analysed.state == BoundState::kUnbounded;
    output_.Write(fmt::format("\nWhy {} takes {}{} bytes\n",
                              CutName(result_.SpecName(function)) + result_.Distinction(function),
                              unbounded ? "at least " : "", analysed.known));
    ExplanationRows(result_, ExplanationRows::Shown::kLargest, output_).WriteParts(function);
  }

  // Of a single function its causes alone: nothing is freed but the function.
  void WriteWanted(bool ofAll) {
    constexpr size_t kMostBlocks = 4;
    const std::vector<StatementBlock> blocks = StatementBlocks(plan_, kMostBlocks);
    if (blocks.empty()) {
      return;
    }
    output_.Write(
        fmt::format("\nWhat to state first{} (velkor-cli todo writes all of it, to be filled in)\n",
                    ofAll ? fmt::format(", for the {} without a bound", plan_.unbounded) : ""));
    output_.Write(TableLine({ofAll ? "Frees" : "", "", "Lines"}, 0, "Statements"));
    for (const StatementBlock& block : blocks) {
      output_.Write(TableLine(
          {ofAll ? std::to_string(block.frees) : "", "", std::to_string(block.statements.size())},
          0, StatementList(result_, block.statements)));
    }
    if (const uint32_t left = plan_.unbounded - Freed(blocks); left != 0) {
      output_.Write(TableLine({std::to_string(left), "", ""}, 0, "with what else is missing"));
    }
  }

  static uint32_t Freed(const std::vector<StatementBlock>& blocks) {
    uint32_t freed = 0;
    for (const StatementBlock& block : blocks) {
      freed += block.frees;
    }
    return freed;
  }

  void WriteLegend() {
    output_.Write(
        fmt::format("\n{}: at least.  *: recursive.  &: calls indirectly.\n"
                    "[ ]: not defined in the project.  +: adjustment or library size.\n",
                    result_.atLeast));
  }

  const AnalysisResult& result_;
  const StatementPlan& plan_;
  ResultOutput& output_;
};

}  // namespace

void WriteAnswer(const AnalysisResult& result, const StatementPlan& plan,
                 const AnswerChoice& choice, ResultOutput& output) {
  AnswerOutput(result, plan, output).Write(choice);
}

}  // namespace velkor::reports
