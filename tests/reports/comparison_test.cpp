#include "reports/comparison.h"

#include <gtest/gtest.h>
#include <random>
#include <set>

#include "reports/analysis.h"
#include "reports/analysis_reader.h"
#include "reports/comparison_json.h"
#include "reports/comparison_output.h"
#include "reports/json_output.h"
#include "support/json_schema.h"

namespace velkor::reports {
namespace {

using testing::Analysis;
using testing::Written;

ComparedAnalysis Taken(Analysis& analysis, const std::string& label) {
  ComparedAnalysis taken = TakeCompared(analysis.Result());
  taken.label = label;
  return taken;
}

std::string Text(Analysis& before, Analysis& after) {
  const ComparedAnalysis older = Taken(before, "old");
  const ComparedAnalysis newer = Taken(after, "new");
  return Written([&](ResultOutput& output) {
    WriteComparisonText(Compare(older, newer), older, newer, output);
  });
}

std::string Text(std::string_view before, std::string_view after) {
  Analysis older(before);
  Analysis newer(after);
  return Text(older, newer);
}

std::string Markdown(std::string_view before, std::string_view after) {
  Analysis older(before);
  Analysis newer(after);
  const ComparedAnalysis left = Taken(older, "old|1");
  const ComparedAnalysis right = Taken(newer, "new`s");
  return Written([&](ResultOutput& output) {
    WriteComparisonMarkdown(Compare(left, right), left, right, output);
  });
}

TEST(Comparison, NamesTheFunctionThatGrewMostOnTheWorstPath) {
  EXPECT_EQ(Text("main 10 -> a c\na 20 -> b\nb 24\nc 30\nisr 4 -> b\nidle 2\n",
                 "main 10 -> a c\na 24 -> b\nb 236\nc 90\nisr 4 -> b\nidle 2\n"),
            "Stack: 2 grew (old → new)\n\n"
            "    Before     After    Change  Function\n"
            "        54       270      +216  main: grew\n"
            "        28       240      +212  isr: grew\n\n"
            "Why\n"
            "  main, isr up to +216: b 24 → 236, by main → a → b\n");
  EXPECT_EQ(Text("main 10\nsame 4\n", "main 10\nsame 4\n"), "Stack: nothing changed (old → new)\n");
}

TEST(Comparison, WhatIsMissingNowComesBeforeWhatGrew) {
  EXPECT_EQ(Text("main 10 -> a\na 20\nlarge 10 -> step\nstep 5\nold 4\nleft 4 -> x\n? x\nless 90\n",
                 "main 10 -> a\na 20 -> lib\nlarge 10 -> step\nstep 5 -> more\nmore 900\n"
                 "added 8\nleft 4\nless 80\n"),
            "Stack: 1 lost its bound, 1 grew, 1 new, 1 shrank, 1 has a bound now, 1 gone "
            "(old → new)\n\n"
            "    Before     After    Change  Function\n"
            "        30       ≥30            main: lost its bound\n"
            "        15       915      +900  large: grew\n"
            "                   8            added: new\n"
            "        90        80       -10  less: shrank\n"
            "        ≥4         4            left: has a bound now\n"
            "         4                      old: gone\n\n"
            "Why\n"
            "  main: [lib] is unknown, by main → a → [lib]\n"
            "  large +900: more (900 bytes) is now called by step, by large → step → more\n"
            "  less -10: less 90 → 80\n");
}

TEST(Comparison, RoundsThatAreStatedAreACause) {
  const std::string ring = "main 10 -> a\na 20 -> b\nb 30 -> a\n";
  Analysis before(ring);
  before.Adjust(before.graph["a"], kNoMargin, 2);
  before.Compute();
  Analysis after(ring);
  after.Adjust(after.graph["a"], kNoMargin, 5);
  after.Compute();
  const std::string text = Text(before, after);
  EXPECT_NE(text.find("\n  main +150: rounds of a 2 → 5, by main → a\n"), std::string::npos)
      << text;
  EXPECT_NE(Text(after, before).find("\n  main -150: rounds of a 5 → 2"), std::string::npos);
}

// Builds number clones as they come, and a second file of one name makes the first one's longer.
TEST(Comparison, KnowsAFunctionByItsNameAlone) {
  EXPECT_EQ(WithoutCloneNumbers("f.part.0"), "f.part");
  EXPECT_EQ(WithoutCloneNumbers("x.c#f.isra.12.constprop.3.cold"), "x.c#f.isra.constprop.cold");
  EXPECT_EQ(WithoutCloneNumbers("f.part.x.isra."), "f.part.x.isra.");
  EXPECT_EQ(Text("main 10 -> f.part.0 f.part.1\nf.part.0 20\nf.part.1 50\n",
                 "main 10 -> f.part.4 f.part.7\nf.part.4 20\nf.part.7 50\n"),
            "Stack: nothing changed (old → new)\n");
  EXPECT_EQ(Text("static f 10\n", "f 10\n"), "Stack: nothing changed (old → new)\n");
}

TEST(Comparison, JsonHoldsEveryKindOfChangeAndCause) {
  Analysis older("main 10 -> a\na 20\nlarge 10 -> step\nstep 5\nold 4\nleft 4 -> x\n? x\n");
  Analysis newer("main 10 -> a\na 20 -> lib\nlarge 10 -> step\nstep 5 -> more\nmore 9\nleft 4\n");
  const ComparedAnalysis before = Taken(older, "\x1B[31m\"old\"");
  const ComparedAnalysis after = Taken(newer, "new");
  const std::string json = Written([&](ResultOutput& output) {
    WriteComparisonJson(Compare(before, after), before, after, output);
  });
  EXPECT_EQ(testing::SchemaFault("diff", json), "") << json;
  EXPECT_EQ(testing::SchemaFault("diff", "{\"mood\": 1}"),
            "#/mood breaks additionalProperties of #");
  for (const char* part :
       {"\"change\": \"lost-bound\"", "\"change\": \"gone\"", "\"new\": null", "\"kind\": \"call\"",
        "\"kind\": \"unknown\"", "\"path\": [\"large\", \"step\", \"more\"]"}) {
    EXPECT_NE(json.find(part), std::string::npos) << part << json;
  }
}

TEST(Comparison, MarkdownIsOneHeadingATableAndTheRestFoldedAway) {
  EXPECT_EQ(Markdown("a|b 10\nsame 4\n", "a|b 30\nsame 4\n"),
            "### Stack: 1 grew (`old|1` → `` new`s ``)\n\n"
            "| State | Function | Before | After | Change |\n|---|---|---:|---:|---:|\n"
            "| grew | `a\\|b` | 10 | 30 | +20 |\n\n"
            "- `a|b` +20: `a|b` 10 → 30\n\n"
            "<details><summary>1 unchanged</summary>\n\n"
            "| Function | Bytes |\n|---|---:|\n| `same` | 4 |\n\n</details>\n");
  EXPECT_EQ(Markdown("a 1\n", "a 1\n"), "### Stack: nothing changed (`old|1` → `` new`s ``)\n");
  EXPECT_EQ(MarkdownName("<b>@x``y\n"), "``` <b>@x``y  ```");
}

uint32_t Below(std::mt19937& random, uint32_t end) {
  return static_cast<uint32_t>(random() % end);
}

std::string RandomGraph(std::mt19937& random) {
  const auto below = [&random](uint32_t end) { return Below(random, end); };
  const uint32_t count = 1 + below(9);
  std::string text;
  for (uint32_t i = 0; i < count; ++i) {
    text += "f" + std::to_string(i) + " " + std::to_string(below(70000)) + " ->";
    std::set<uint32_t> callees;
    for (uint32_t calls = below(4); calls > 0; --calls) {
      callees.insert(below(count + 1));  // one of them is unknown
    }
    for (const uint32_t callee : callees) {
      text += " f" + std::to_string(callee);
    }
    text += "\n";
  }
  return text;
}

std::optional<ComparedAnalysis> Read(const std::string& json, std::string& error) {
  std::FILE* file = std::tmpfile();
  std::fwrite(json.data(), 1, json.size(), file);
  std::rewind(file);
  std::optional<ComparedAnalysis> read = ReadAnalysis(file, error);
  std::fclose(file);
  return read;
}

// What is compared is the same, whether it comes from the analysis or from its JSON.
TEST(AnalysisReader, ReadsBackWhatIsWritten) {
  std::mt19937 random(1);
  for (int round = 0; round < 300; ++round) {
    Analysis analysis(RandomGraph(random));
    for (StkFunction* function : analysis.graph.functions.Functions()) {
      if (random() % 3 == 0) {
        analysis.Adjust(*function, Below(random, 2) == 0 ? kNoMargin : Below(random, 100),
                        Below(random, 3));
      }
    }
    analysis.Compute();
    const AnalysisResult result = analysis.Result();
    const ComparedAnalysis taken = TakeCompared(result);
    std::string error;
    const std::string json = Written([&](ResultOutput& out) { WriteJson(result, out); });
    EXPECT_EQ(testing::SchemaFault("analyze", json), "");
    const auto read = Read(json, error);
    ASSERT_TRUE(read) << error;
    ASSERT_EQ(read->functions.size(), taken.functions.size());
    for (uint32_t i = 0; i < taken.functions.size(); ++i) {
      EXPECT_EQ(read->keys[i], taken.keys[i]);
      EXPECT_EQ(read->functions[i].own, taken.functions[i].own);
      EXPECT_EQ(read->functions[i].known, taken.functions[i].known);
      EXPECT_EQ(read->functions[i].state, taken.functions[i].state);
      EXPECT_EQ(read->functions[i].group, taken.functions[i].group);
      EXPECT_EQ(read->functions[i].depth, taken.functions[i].depth);
      EXPECT_EQ(read->functions[i].isTopLevel, taken.functions[i].isTopLevel);
      EXPECT_EQ(std::vector(read->Callees(i).begin(), read->Callees(i).end()),
                std::vector(taken.Callees(i).begin(), taken.Callees(i).end()));
      EXPECT_EQ(read->Reasons(i).size(), taken.Reasons(i).size());
    }
    EXPECT_EQ(read->groups, taken.groups);
    EXPECT_EQ(read->activations, taken.activations);
    const Comparison comparison = Compare(taken, *read);
    EXPECT_EQ(comparison.matched, taken.functions.size());
    EXPECT_EQ(comparison.Count(EntryChange::kUnchanged), comparison.entries.size());
  }
}

// Wherever it is cut, and whatever stands in it, nothing is compared that is not an analysis.
TEST(AnalysisReader, TakesNothingThatIsNotAWholeAnalysis) {
  Analysis analysis("main 10 -> a x\na 20 -> a\n? x\n");
  const std::string json =
      Written([&](ResultOutput& output) { WriteJson(analysis.Result(), output); });
  std::string error;
  EXPECT_TRUE(Read(json, error));
  for (size_t length = 0; length + 2 < json.size(); length += 5) {
    EXPECT_FALSE(Read(json.substr(0, length), error)) << length;
    EXPECT_NE(error.find("is cut short or no JSON"), std::string::npos) << error;
  }
  const auto with = [&json](const std::string& part, const std::string& other) {
    std::string changed = json;
    changed.replace(changed.find(part), part.size(), other);
    return changed;
  };
  const std::pair<std::string, std::string> wrong[] = {
      {with("\"schema\": 2", "\"schema\": 1"), "holds JSON of schema 1, and schema 2 is read"},
      {with("velkor ", "other "), "holds no analysis of velkor"},
      {"[]", "holds no analysis of velkor"},
      {"7", "holds no analysis of velkor"},
      {"{\"functions\": [3, [], {}]}", "is damaged: function 0 is not whole"},
      {"{\"schema\": 2, \"generator\": \"velkor 2\"}", "holds no analysis of velkor"},
      {with("\"callees\": [1", "\"callees\": [99"), "is damaged: it names functions"},
      {with("\"group\": 0", "\"group\": 7"), "is damaged: it names functions"},
      {with("\"kind\": \"recursion\"", "\"kind\": \"mood\""), "is damaged: it names a reason"},
      {with("\"boundState\": \"", "\"boundState\": \"un"), "is damaged: function 0 is not whole"},
      {json + "x", "is cut short or no JSON"},
      {std::string(200'000, '['), "is cut short or no JSON"}};
  for (const auto& [text, fault] : wrong) {
    EXPECT_FALSE(Read(text, error)) << fault;
    EXPECT_TRUE(error.starts_with(fault)) << error << " not " << fault;
  }
}

}  // namespace
}  // namespace velkor::reports
