#include <gtest/gtest.h>

#include "reports/gate/gate_case.h"

namespace velkor::reports {
namespace {

using testing::FindingLines;
using testing::GateCase;
using testing::StackLines;
using Lines = std::vector<std::string>;

constexpr const char* kToml =
    "frame = 0\nswitch = 0\n[stack.m]\nentry = \"main\"\nsize = 1000\n[interrupts]\nlevels = []\n"
    "[gate]\ngrowth = 10\n";

// The gate of one program against the baseline of another.
GateReport Against(std::string_view before, std::string_view now, const std::string& toml = kToml) {
  const Baseline baseline = GateCase(before).BaselineOf(toml);
  return GateCase(now).Check(toml, &baseline);
}

TEST(Baseline, OnlyMoreThanIsAllowedIsARegression) {
  const char* before = "main 10 -> f\nf 100 -> g\ng 20\n";
  EXPECT_EQ(FindingLines(Against(before, before)), Lines());
  EXPECT_EQ(FindingLines(Against(before, "main 10 -> f\nf 110 -> g\ng 20\n")), Lines());
  EXPECT_EQ(FindingLines(Against(before, "main 10 -> f\nf 50 -> g\ng 20\n")), Lines());
  const GateReport grown = Against(before, "main 10 -> f\nf 102 -> g\ng 30\n");
  EXPECT_EQ(grown.stacks[0].change, 12);
  EXPECT_EQ(FindingLines(grown), Lines{"error regression: stack m needs 142 bytes, 12 more than "
                                       "before: g 20 -> 30, by main > f > g"});
  EXPECT_EQ(StackLines(grown), Lines{"m regression 142 of 1000"});
  EXPECT_EQ(FindingLines(Against(before, "main 10 -> f\nf 100 -> h\nh 40 -> g\ng 20\n")),
            Lines{"error regression: stack m needs 170 bytes, 40 more than before: h 40 is called "
                  "anew, by main > f > h"});
  // Too small is worse, and with another compiler it only warns.
  EXPECT_EQ(StackLines(Against(before, "main 10 -> f\nf 1000\n")),
            Lines{"m over-budget 1010 of 1000"});
  GateCase other("main 10 -> f\nf 200\n");
  Baseline baseline = GateCase(before).BaselineOf(kToml);
  baseline.compiler = "GCC 9.9.9";
  const GateReport warned = other.Check(kToml, &baseline);
  EXPECT_EQ(warned.findings[0].severity, Severity::kWarning);
  EXPECT_TRUE(warned.Passed());
  // Without a growth in [gate] it is not looked at.
  const std::string toml = std::string(kToml).substr(0, std::string(kToml).find("growth"));
  EXPECT_EQ(FindingLines(Against(before, "main 500\n", toml)), Lines());
}

TEST(Baseline, ACauseThatIsKnownOnlyWarns) {
  const char* known = "warning no-bound: stack m has no bound: the size of [u] is not known";
  EXPECT_EQ(FindingLines(Against("main 10 -> u\n? u\n", "main 12 -> u\n? u\n")), Lines{known});
  EXPECT_EQ(FindingLines(Against("main 10 -> u\n? u\n", "main 10 -> u v\n? u\n? v\n")),
            (Lines{"error no-bound: stack m has no bound: the size of [v] is not known", known}));
  EXPECT_EQ(FindingLines(Against("main 10\n", "main 10 -> u\n? u\n")),
            (Lines{"error regression: stack m had a bound of 10 bytes, and has none any more",
                   "error no-bound: stack m has no bound: the size of [u] is not known"}));
  EXPECT_EQ(
      FindingLines(Against("main 10 -> u\n? u\n", "main 10 -> u\nu 500\n")),
      Lines{"note now-known: stack m lacked a bound of what is now known: it needs 510 bytes"});
  EXPECT_EQ(
      FindingLines(Against("main 10 -> u v\n? u\n? v\n", "main 10 -> u v\nu 500\n? v\n")).back(),
      "note now-known: stack m lacked a bound of what is now known: it needs at least 510 "
      "bytes");
  // What is missing stays the same, and the rest grows.
  EXPECT_EQ(StackLines(Against("main 10 -> u\n? u\n", "main 500 -> u\n? u\n")),
            Lines{"m regression >=500 of 1000"});
}

// Of another file, and by another clone, it is the same function; of two of a name it is not.
TEST(Baseline, FunctionsAreKnownAgain) {
  Baseline baseline;
  baseline.causes = {{"no-bound", "indirect a.c#run", {}},
                     {"no-bound", "unknown [memcpy]", {}},
                     {"no-bound", "indirect x.c#two", {}},
                     {"no-bound", "indirect y.c#two", {}}};
  const auto holds = [&](const Lines& names) {
    std::vector<Baseline::Cause> asked;
    for (const std::string& name : names) {
      asked.push_back({"no-bound", name, {}});
    }
    return baseline.Holds(asked);
  };
  using Answers = std::vector<bool>;
  EXPECT_EQ(holds({"indirect a.c#run", "indirect b.c#go"}), (Answers{true, false}));
  EXPECT_EQ(holds({"indirect b.c#run"}), Answers{true}) << "moved";
  EXPECT_EQ(holds({"indirect run"}), Answers{true}) << "no longer static";
  EXPECT_EQ(holds({"indirect a.c#run", "indirect b.c#run"}), (Answers{true, false}));
  EXPECT_EQ(holds({"dynamic a.c#run"}), Answers{false});
  EXPECT_EQ(holds({"indirect z.c#two"}), Answers{false});
  EXPECT_EQ(holds({"unknown [memcpy]"}), Answers{true});
}

TEST(Baseline, WhatItCountsIsNotLostWithoutAWord) {
  GateCase program("main 10 -> helper\nhelper 100\nisr 20 -> deep\ndeep 4\n");
  const std::string both = std::string(kToml) + "[stack.h]\nentry = \"helper\"\nsize = 200\n";
  const Baseline baseline = program.BaselineOf(both);
  EXPECT_EQ(FindingLines(program.Check(kToml, &baseline)).front(),
            "error unlisted-task: the baseline has a stack h with the entry helper, which no stack "
            "names any more");
  // Under another name it is there, and a function that is gone needs no stack.
  const std::string renamed = std::string(kToml) + "[stack.k]\nentry = \"helper\"\nsize = 200\n";
  EXPECT_TRUE(program.Check(renamed, &baseline).Passed());
  EXPECT_TRUE(GateCase("main 10\nisr 20 -> deep\ndeep 4\n").Check(kToml, &baseline).Passed());
}

TEST(Baseline, IsWrittenForAReviewAndReadAgain) {
  GateCase program("main 10 -> a b u\na 4 -> b\nb 4 -> a\n? u\nisr 9\n");
  const Baseline baseline = program.BaselineOf(
      "frame = 4\nswitch = 0\n[stack.z]\nentry = \"main\"\nsize = 100\n[stack.\"a \\\"b\"]\n"
      "entry = \"isr\"\nsize = 1\n");
  const std::string text = BaselineText(baseline);
  EXPECT_EQ(text,
            "{\"schema\": 1,\n\"project\": \"fw/velkor.toml\",\n\"commit\": \"\",\n"
            "\"compiler\": \"CCTarn 3.70\",\n\"stacks\": [\n"
            "{\"name\":\"a \\\"b\",\"bounded\":true,\"bytes\":13,\"entries\":[\"isr\"],\"path\":"
            "[[\"isr\",9]]},\n"
            "{\"name\":\"z\",\"bounded\":false,\"bytes\":18,\"entries\":[\"main\"],\"path\":"
            "[[\"main\",10],[\"a\",4]]}\n],\n\"handlers\": [\n],\n\"causes\": [\n"
            "{\"rule\":\"no-bound\",\"name\":\"recursion a\",\"stacks\":[\"z\"]},\n"
            "{\"rule\":\"no-bound\",\"name\":\"unknown [u]\",\"stacks\":[\"z\"]}\n]}\n");
  const ReadBaselineResult read = ReadBaseline(text);
  ASSERT_TRUE(read.baseline) << read.fault;
  EXPECT_EQ(BaselineText(*read.baseline), text);
  // Cut anywhere it is refused, with a place in it.
  for (size_t length = 0; length + 2 < text.size(); ++length) {
    const ReadBaselineResult cut = ReadBaseline(text.substr(0, length));
    ASSERT_FALSE(cut.baseline) << length;
    EXPECT_FALSE(cut.fault.empty());
    EXPECT_GE(cut.place.line, 1U);
  }
  const std::vector<std::pair<std::string, std::string>> wrong = {
      {"\"schema\": 1", "\"schema\": 2"},
      {"\"bytes\":13", "\"bytes\":-13"},
      {"\"bytes\":13", "\"bytes\":\"13\""},
      {"\"bounded\":true", "\"bounded\":1"},
      {"[\"isr\",9]", "[\"isr\"]"},
      {"[\"isr\",9]", "{}"},
      {"\"entries\":[\"isr\"]", "\"entries\":0"},
      {"\"causes\": [", "\"cause\": ["},
      {"\"recursion a\"", "null"},
      {"\"isr\"", "\"\xFF\""},
      {"\"handlers\": [", "\"handlers\": [7"}};
  for (const auto& [from, to] : wrong) {
    std::string changed = text;
    changed.replace(changed.find(from), from.size(), to);
    EXPECT_FALSE(ReadBaseline(changed).baseline) << to;
  }
  EXPECT_FALSE(ReadBaseline(std::string(1'000'000, '[')).baseline);
  EXPECT_TRUE(IsSameProject("fw/velkor.toml", "velkor.toml"));
  EXPECT_FALSE(IsSameProject("fw/velkor.toml", "app/velkor.toml"));
  EXPECT_FALSE(IsSameProject("fw/velkor.toml", "kor.toml"));
}

}  // namespace
}  // namespace velkor::reports
