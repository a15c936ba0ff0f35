#include <algorithm>
#include <gtest/gtest.h>
#include <rapidjson/document.h>
#include <utility>

#include "reports/analysis.h"
#include "reports/csv_output.h"
#include "reports/entry_ranking.h"
#include "reports/json_output.h"
#include "reports/result_output.h"
#include "reports/table_line.h"
#include "reports/terminal_text.h"
#include "reports/text_output.h"
#include "reports/uncertainty.h"

namespace velkor::reports {
namespace {

using testing::Analysis;
using testing::Written;

std::vector<std::string> Names(const AnalysisResult& result,
                               const std::vector<uint32_t>& functions) {
  std::vector<std::string> names;
  for (const uint32_t function : functions) {
    names.emplace_back(result.Name(function).substr(1));
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
  EXPECT_EQ(TableLine({"≥46168", "2152-48944", "64-256"}, 0, "f"),
            "    ≥46168 2152-48944    64-256  f\n");
}

TEST(Outputs, WhatIsKnownOfMostComesFirst) {
  Analysis analysis("a 10\n? u\nb 20\nover 60000 -> big\nbig 6000\nc 15 -> d\nd 5\nfull 65535\n");
  EXPECT_EQ(Names(analysis.Result(), LargestFirst(analysis.Result())),
            (Texts{"over", "full", "b", "c", "a", "u"}));
  const std::string json =
      Written([&](ResultOutput& output) { WriteJson(analysis.Result(), output); });
  for (const char* sizes : {"\"frameSize\": 60000,\n   \"totalStackSize\": null,",
                            "\"frameSize\": 65535,\n   \"totalStackSize\": 65535,",
                            "\"frameSize\": null,\n   \"totalStackSize\": null,"}) {
    EXPECT_NE(json.find(sizes), std::string::npos) << sizes << json;
  }
  const std::string text =
      Written([&](ResultOutput& output) { WriteAllText(analysis.Result(), false, output); });
  EXPECT_NE(text.find("     66000  SIZEOVER     60000  over\n"
                      "     60000               60000    over\n"
                      "      6000                6000    big\n"
                      "                                over the limit of 65535 bytes\n"),
            std::string::npos)
      << text;
}

// A result is a value: what computed it is gone, and another one stands beside it.
TEST(Outputs, AResultOutlivesWhatComputedIt) {
  AnalysisResult taken = Analysis("main 4 -> step\nstep 6\n").Result();
  const AnalysisResult other = Analysis("other 6\n").Result();
  const AnalysisResult result = std::move(taken);
  EXPECT_EQ(Names(other, LargestFirst(other)), Texts{"other"});
  const std::string text =
      Written([&](ResultOutput& output) { WriteAllText(result, false, output); });
  EXPECT_NE(text.find("10        10         4  main\n"), std::string::npos) << text;
}

// Enough functions for several parts, of which some have what most have not.
TEST(Outputs, TheSameBytesByAnyNumberOfThreads) {
  std::string lines;
  for (int i = 0; i < 9000; ++i) {
    if (i % 30 == 0) {
      lines += "static step 8\n";
    }
    const std::string number = std::to_string(i);
    lines += "f" + number + " 8 -> f" + std::to_string(i * 7 % 9000) + " u" +
             std::to_string(i % 100) + " step" +
             (i % 5 == 0 ? " => f" + std::to_string(i / 2) : "") + "\n";
  }
  std::string csv;
  std::string json;
  for (const size_t threads : {1U, 2U, 8U}) {
    Analysis analysis(lines, CodePage::Utf8(), threads);
    const AnalysisResult result = analysis.Result(threads);
    const std::string rows =
        Written([&](ResultOutput& output) { WriteCsv(result, output, threads); });
    const std::string object =
        Written([&](ResultOutput& output) { WriteJson(result, output, threads); });
    EXPECT_TRUE(csv.empty() || (rows == csv && object == json)) << threads;
    csv = rows;
    json = object;
  }
  EXPECT_EQ(std::ranges::count(csv, '\n'), 9402);
  rapidjson::Document parsed;
  parsed.Parse(json.c_str());
  ASSERT_FALSE(parsed.HasParseError());
  ASSERT_EQ(parsed["functions"].Size(), 9401U);
  for (unsigned i = 0; i < 9000; ++i) {
    ASSERT_EQ(parsed["functions"][i + i / 30 + 1]["name"].GetString(), "_f" + std::to_string(i));
  }
}

// What is too long for a line is cut between characters of the project's set, two bytes each here.
TEST(Outputs, TextsOfAResultAreUtf8) {
  std::string name;
  std::string shown;
  for (int i = 0; i < 300; ++i) {
    name += "\x93\xFA";
    shown += i < 250 ? "日" : "";
  }
  Analysis analysis(name + " 4\n", CodePage::ShiftJis());
  const std::string text =
      Written([&](ResultOutput& output) { WriteAllText(analysis.Result(), false, output); });
  EXPECT_NE(text.find("  " + shown + "...\n"), std::string::npos) << text;
  EXPECT_NE(text.find(">=: at least"), std::string::npos) << text;
}

TEST(Outputs, WhatIsMissingShowsAtEverySize) {
  for (const std::string bytes : {"65534", "65535", "65536"}) {
    Analysis analysis("f " + bytes + " -> x\n? x\n");
    const AnalysisResult result = analysis.Result();
    const std::string text =
        Written([&](ResultOutput& output) { WriteAllText(result, false, output); });
    EXPECT_NE(text.find(" ≥" + bytes + " "), std::string::npos) << text;
  }
}

TEST(Uncertainty, NamesTheNearestAndCountsTheRest) {
  std::string text = "main 4 -> near hub\nhub 4 ->";
  for (int i = 0; i < 30; ++i) {
    text += " far" + std::to_string(100 + i);
  }
  Analysis analysis(text + "\n? near\nsure 6\n");
  const AnalysisResult result = analysis.Result();
  UncertaintySearch search(result);
  const Uncertainty found = search.Below(analysis.graph["main"].index);
  EXPECT_EQ(found.Of(ReasonKind::kUnknown).count, 31U);
  ASSERT_EQ(found.Of(ReasonKind::kUnknown).named.size(), NamedFunctions::kMostNamed);
  const std::vector<std::string> names = Names(result, found.Of(ReasonKind::kUnknown).named);
  EXPECT_EQ(names[0], "near");
  EXPECT_EQ(names[1], "far100");
  EXPECT_FALSE(found.cutShort);
  EXPECT_EQ(search.Below(analysis.graph["hub"].index).Of(ReasonKind::kUnknown).count, 30U)
      << "searches are independent";
  EXPECT_EQ(search.Below(analysis.graph["sure"].index).Of(ReasonKind::kUnknown).count, 0U);
}

TEST(Uncertainty, AllSearchesTogetherAreBounded) {
  Analysis analysis("a 4 -> b\nb 4 -> c\nc 4 -> x\n? x\nd 4 -> x\n");
  const AnalysisResult result = analysis.Result();
  UncertaintySearch search(result, {.exact = 7, .walk = 3, .all = 11});
  EXPECT_FALSE(search.Below(analysis.graph["a"].index).cutShort) << "three calls, four functions";
  EXPECT_FALSE(search.Below(analysis.graph["d"].index).cutShort) << "one call, two functions";
  const Uncertainty cut = search.Below(analysis.graph["d"].index);
  EXPECT_TRUE(cut.cutShort);
  EXPECT_EQ(cut.Of(ReasonKind::kUnknown).count, 0U);
}

}  // namespace
}  // namespace velkor::reports
