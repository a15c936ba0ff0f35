#include <gtest/gtest.h>

#include "reports/analysis.h"
#include "reports/chain_output.h"
#include "reports/csv_output.h"
#include "reports/result_output.h"
#include "reports/terminal_text.h"
#include "reports/text_output.h"
#include "reports/uncertainty.h"

namespace velkor::reports {
namespace {

using testing::Analysis;
using testing::Written;

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
  for (const std::string formula : {"=1+1", "+1", "-1", "@SUM(1)", "\tx"}) {
    EXPECT_EQ(CsvField(formula), "'" + formula);
  }
  EXPECT_EQ(CsvField("=a,\r\n\x1B"), "\"'=a, \uFFFD\"");
}

TEST(Outputs, ALineOfATerminalObeysNothing) {
  EXPECT_EQ(OneLine("one\ntwo\r\nthree\rfour"), "one two three four");
  EXPECT_EQ(OneLine("\x1B[2J\tü\x7F"), "\uFFFD[2J\tü\uFFFD");
  EXPECT_EQ(OneLine("\u009B2J\u00A0"), "\uFFFD2J\u00A0");
  EXPECT_EQ(CharacterCount("≥10"), 3U);
}

TEST(Outputs, WhatIsKnownOfMostComesFirst) {
  Analysis analysis("a 10\n? u\nb 20\nover 60000 -> big\nbig 6000\nc 15 -> d\nd 5\n");
  EXPECT_EQ(Names(LargestFirst(analysis.Result())), (Texts{"over", "b", "c", "a", "u"}));
  const std::string text =
      Written([&](ResultOutput& output) { WriteText(analysis.Result(), false, output); });
  EXPECT_NE(text.find("     66000  SIZEOVER     60000  over\n"
                      "     60000               60000    over\n"
                      "      6000                6000    big\n"
                      "                                over the limit of 65535 bytes\n"),
            std::string::npos)
      << text;
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
            "Bounded    0 of the top-level ones\n"
            "\n"
            "Top-level functions, largest bound first, each with the calls whose bytes add up to "
            "it.\n"
            "≥: at least, for what is named beneath.  *: recursive.  &: calls indirectly.\n"
            "[ ]: not defined in the project.  +: adjustment or library size.\n"
            "\n"
            "     Bound     Total     Frame  Function\n"
            "       ≥28        34         8  isr\n"
            "         8                   8    isr\n"
            "        20                  20    deep*\n"
            "                                recursion that no depths limit: step, deep\n"
            "\n"
            "       ≥24        30         4  main\n"
            "         4                   4    main\n"
            "        20                  20    deep*\n"
            "                                unknown: [x]\n"
            "                                recursion that no depths limit: step, deep\n"
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
  EXPECT_EQ(found.Of(ReasonKind::kUnknown).count, 31U);
  ASSERT_EQ(found.Of(ReasonKind::kUnknown).named.size(), NamedFunctions::kMostNamed);
  EXPECT_EQ(found.Of(ReasonKind::kUnknown).named[0]->name, "_near");
  EXPECT_EQ(found.Of(ReasonKind::kUnknown).named[1]->name, "_far100");
  EXPECT_FALSE(found.cutShort);
  EXPECT_EQ(search.Below(analysis.graph["hub"]).Of(ReasonKind::kUnknown).count, 30U)
      << "searches are independent";
  EXPECT_EQ(search.Below(analysis.graph["sure"]).Of(ReasonKind::kUnknown).count, 0U);
}

TEST(Uncertainty, AllSearchesTogetherAreBounded) {
  Analysis analysis("a 4 -> b\nb 4 -> c\nc 4 -> x\n? x\nd 4 -> x\n");
  const AnalysisResult result = analysis.Result();
  UncertaintySearch search(result, {.exact = 7, .walk = 3, .all = 11});
  EXPECT_FALSE(search.Below(analysis.graph["a"]).cutShort) << "three calls, four functions";
  EXPECT_FALSE(search.Below(analysis.graph["d"]).cutShort) << "one call, two functions";
  const Uncertainty cut = search.Below(analysis.graph["d"]);
  EXPECT_TRUE(cut.cutShort);
  EXPECT_EQ(cut.Of(ReasonKind::kUnknown).count, 0U);
}

}  // namespace
}  // namespace velkor::reports
