#include <cstdio>
#include <functional>
#include <gtest/gtest.h>

#include "cli/chain_output.h"
#include "cli/csv_output.h"
#include "cli/result_output.h"
#include "cli/terminal_text.h"
#include "cli/text_output.h"
#include "cli/uncertainty.h"
#include "core/completeness.h"
#include "core/recompute.h"
#include "support/graph.h"
#include "support/recorder.h"

namespace velkor {
namespace {

using testing::Graph;
using testing::Recorder;

// A graph with its totals, as an analysis would leave it.
struct Analysis {
  explicit Analysis(std::string_view text) : graph(text) {
    for (const auto& function : graph.functions.Functions()) {
      if (function->adjustment) {
        StkAdjustment pending;
        pending.callees = function->extraCallees;
        function->pendingAdjustment = std::make_unique<StkAdjustment>(pending);
      }
    }
    Recompute(graph.functions, roots, true, nullptr, nullptr, recorder.reporter);
  }

  AnalysisResult Result() {
    return {graph.codePage,
            "app.prj",
            "CCTarn",
            "3.70",
            log,
            graph.functions,
            roots.Functions(),
            CompleteFunctions(graph.functions)};
  }

  Graph graph;
  Recorder recorder{graph.codePage};
  StkRootList roots;
  std::vector<StkMessage> log;
};

std::string Written(const std::function<void(ResultOutput&)>& write) {
  std::FILE* file = std::tmpfile();
  ResultOutput output(file);
  write(output);
  EXPECT_TRUE(output.Finish());
  std::string text(static_cast<size_t>(std::ftell(file)), '\0');
  std::rewind(file);
  EXPECT_EQ(std::fread(text.data(), 1, text.size(), file), text.size());
  std::fclose(file);
  return text;
}

std::vector<std::string> Names(const StkFunctionList& functions) {
  std::vector<std::string> names;
  for (const StkFunction* function : functions) {
    names.emplace_back(function->name.substr(1));
  }
  return names;
}

using Texts = std::vector<std::string>;

TEST(Outputs, FieldsAreQuotedOnlyWhereTheyMustBe) {
  EXPECT_EQ(CsvField("C:\\p p\\main.c"), "C:\\p p\\main.c");
  EXPECT_EQ(CsvField(""), "");
  EXPECT_EQ(CsvField("a,b"), "\"a,b\"");
  EXPECT_EQ(CsvField("a\"b"), "\"a\"\"b\"");
  EXPECT_EQ(CsvField("a\r"), "\"a\r\"");
}

TEST(Outputs, ALineOfATerminalObeysNothing) {
  EXPECT_EQ(OneLine("one\ntwo\r\nthree\rfour"), "one two three four");
  EXPECT_EQ(OneLine("\x1B[2J\tü\x7F"), "\uFFFD[2J\tü\uFFFD");
  EXPECT_EQ(OneLine("\u009B2J\u00A0"), "\uFFFD2J\u00A0");
  EXPECT_EQ(CharacterCount("≥10"), 3U);
}

TEST(Outputs, OverTheLimitComesFirstAndUnknownLast) {
  Analysis analysis("a 10\n? u\nb 20\nover 60000 -> big\nbig 6000\nc 20\n");
  EXPECT_EQ(Names(LargestFirst(analysis.roots.Functions())), (Texts{"over", "b", "c", "a", "u"}));
}

TEST(Outputs, TextOfASmallAnalysis) {
  Analysis analysis(
      "main 4 -> step x\n"
      "step 6 -> deep\n"
      "deep 20 -> step\n"
      "isr 8 => step\n"
      "? x\n");
  const AnalysisResult result = analysis.Result();
  EXPECT_EQ(Written([&](ResultOutput& output) { WriteText(result, false, output); }),
            "Project    app.prj\n"
            "Compiler   CCTarn V3.70\n"
            "Functions  5, 2 of them top-level\n"
            "Uncertain  2 of the top-level ones: their totals are lower bounds\n"
            "\n"
            "Top-level functions, largest total first, each with the calls that take it.\n"
            "≥: at least, for what is named beneath.  *: recursive.  &: calls indirectly.\n"
            "[ ]: not defined in the project.  +: adjustment or library size.\n"
            "\n"
            "     Total     Frame  Function\n"
            "       ≥34         8  isr\n"
            "       ≥26         6    step*\n"
            "       ≥20        20      deep*\n"
            "       ≥26         6        step*  (again)\n"
            "                      recursive without a depth: step, deep\n"
            "\n"
            "       ≥30         4  main\n"
            "       ≥26         6    step*\n"
            "       ≥20        20      deep*\n"
            "       ≥26         6        step*  (again)\n"
            "                      unknown: [x]\n"
            "                      recursive without a depth: step, deep\n"
            "\n"
            "Unknown functions: 1\n"
            "  [x]  called by main\n"
            "Recursive functions: 2\n"
            "  deep  no depth stated\n"
            "  step  no depth stated\n"
            "Functions with indirect calls: none\n"
            "Adjusted functions: 1\n"
            "  isr  calls step\n"
            "Library functions: none\n");
}

TEST(Uncertainty, NamesTheNearestAndCountsTheRest) {
  std::string text = "main 4 -> near hub\nhub 4 ->";
  for (int i = 0; i < 30; ++i) {
    text += " far" + std::to_string(100 + i);
  }
  Analysis analysis(text + "\n? near\nsure 6\n");
  const AnalysisResult result = analysis.Result();
  UncertaintySearch search(result);
  const Uncertainty found = search.Below(analysis.graph["main"]);
  EXPECT_EQ(found.unknown.count, 31U);
  ASSERT_EQ(found.unknown.named.size(), NamedFunctions::kMostNamed);
  EXPECT_EQ(found.unknown.named[0]->name, "_near");
  EXPECT_EQ(found.unknown.named[1]->name, "_far100");
  EXPECT_FALSE(found.cutShort);
  EXPECT_EQ(search.Below(analysis.graph["hub"]).unknown.count, 30U) << "searches are independent";
  EXPECT_EQ(search.Below(analysis.graph["sure"]).unknown.count, 0U);
}

TEST(Uncertainty, AllSearchesTogetherAreBounded) {
  Analysis analysis("a 4 -> b\nb 4 -> c\nc 4 -> x\n? x\nd 4 -> x\n");
  const AnalysisResult result = analysis.Result();
  UncertaintySearch search(result, {.exact = 7, .walk = 3, .all = 11});
  EXPECT_FALSE(search.Below(analysis.graph["a"]).cutShort) << "three calls, four functions";
  EXPECT_FALSE(search.Below(analysis.graph["d"]).cutShort) << "one call, two functions";
  const Uncertainty cut = search.Below(analysis.graph["d"]);
  EXPECT_TRUE(cut.cutShort);
  EXPECT_EQ(cut.unknown.count, 0U);
}

}  // namespace
}  // namespace velkor
