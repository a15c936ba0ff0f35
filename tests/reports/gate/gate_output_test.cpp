#include <gtest/gtest.h>
#include <rapidjson/document.h>
#include <set>

#include "reports/gate/gate_case.h"
#include "reports/gate/gate_json.h"
#include "reports/gate/gate_rules.h"
#include "reports/gate/gate_text.h"
#include "reports/gate/github_output.h"
#include "reports/gate/gitlab_output.h"
#include "reports/gate/markdown_output.h"
#include "reports/gate/sarif_output.h"
#include "support/json_schema.h"

namespace velkor::reports {
namespace {

using testing::GateCase;
using testing::Written;
using Json = rapidjson::Value;

rapidjson::Document Parsed(const std::string& text) {
  rapidjson::Document json;
  json.Parse<rapidjson::kParseFullPrecisionFlag | rapidjson::kParseValidateEncodingFlag>(
      text.c_str());
  EXPECT_FALSE(json.HasParseError()) << text.substr(0, 2000);
  return json;
}

// A program whose names are markup, in a folder with a blank.
GateReport OddReport() {
  GateCase program("main 100 -> a|b\na|b 20 -> <i>*x*</i>\n<i>*x*</i> 30 -> u::@v%,\n? u::@v%,\n");
  program.files.Put("/r/fw/p/main.c", "");
  GateReport report = program.Check(
      "frame = 36\nswitch = 44\n[stack.\"s|1,:%\\n\"]\nentry = \"main\"\nsize = 200\n"
      "[stack.ok]\nentry = \"a|b\"\nsize = 1000\n");
  report.name = "fw";
  report.findings[0].place = {"fw/my src/a,b:c%d.c", 7, 3};
  return report;
}

GateReport ManyFindings(size_t count) {
  GateReport report;
  report.name = "many";
  for (size_t i = 0; i < count; ++i) {
    Finding finding;
    finding.rule = i % 3 == 0 ? "no-bound" : i % 3 == 1 ? "unlisted-task" : "over-budget";
    finding.severity = i % 3 == 1 ? Severity::kWarning : Severity::kError;
    finding.text = "finding " + std::to_string(i) + std::string(300, 'x');
    finding.cause = std::to_string(i);
    finding.weight = i;
    finding.place = {"src/file.c", static_cast<uint32_t>(i + 1), 1};
    if (i % 3 == 2 && i + 180 > count) {  // more than there is room for
      finding.steps.assign(1500, {"a function with a long name", {"src/file.c", 1, 0}});
    }
    report.findings.push_back(std::move(finding));
  }
  return report;
}

// What the standard requires of a log with results: names, types, references that lead somewhere.
class SarifCheck {
 public:
  explicit SarifCheck(const std::string& text) : log_(Parsed(text)) {
    EXPECT_STREQ(log_["version"].GetString(), "2.1.0");
    EXPECT_TRUE(log_["$schema"].IsString());
    EXPECT_EQ(log_["runs"].Size(), 1U);
    CheckRun(log_["runs"][0]);
  }
  const Json& Run() const { return log_["runs"][0]; }
  const Json& Results() const { return Run()["results"]; }

 private:
  static void CheckText(const Json& message) {
    ASSERT_TRUE(message.IsObject());
    EXPECT_GT(message["text"].GetStringLength(), 0U);
  }
  static void CheckRun(const Json& run) {
    const Json& driver = run["tool"]["driver"];
    EXPECT_STREQ(driver["name"].GetString(), "velkor");
    std::set<std::string> ids;
    for (const Json& rule : driver["rules"].GetArray()) {
      EXPECT_TRUE(ids.insert(rule["id"].GetString()).second) << "an id names one rule";
      for (const char* text : {"shortDescription", "fullDescription", "help"}) {
        CheckText(rule[text]);
      }
      CheckLevel(rule["defaultConfiguration"]["level"]);
    }
    EXPECT_TRUE(run["automationDetails"]["id"].IsString());
    for (const Json& invocation : run["invocations"].GetArray()) {
      EXPECT_TRUE(invocation["executionSuccessful"].IsBool()) << "is required";
    }
    for (const Json& result : run["results"].GetArray()) {
      CheckResult(result, driver["rules"]);
    }
  }
  static void CheckLevel(const Json& level) {
    const std::string text = level.GetString();
    EXPECT_TRUE(text == "error" || text == "warning" || text == "note" || text == "none") << text;
  }
  static void CheckResult(const Json& result, const Json& rules) {
    const uint32_t index = result["ruleIndex"].GetUint();
    ASSERT_LT(index, rules.Size());
    EXPECT_STREQ(result["ruleId"].GetString(), rules[index]["id"].GetString());
    CheckLevel(result["level"]);
    CheckText(result["message"]);
    ASSERT_EQ(result["locations"].Size(), 1U);
    CheckLocation(result["locations"][0]);
    EXPECT_GT(result["partialFingerprints"]["primaryLocationLineHash"].GetStringLength(), 0U);
    if (result.HasMember("codeFlows")) {
      ASSERT_GE(result["codeFlows"][0]["threadFlows"].Size(), 1U);
      const Json& steps = result["codeFlows"][0]["threadFlows"][0]["locations"];
      ASSERT_GE(steps.Size(), 1U);
      EXPECT_LE(steps.Size(), 1000U);
      for (const Json& step : steps.GetArray()) {
        CheckLocation(step["location"]);
        CheckText(step["location"]["message"]);
      }
    }
  }
  static void CheckLocation(const Json& location) {
    const Json& place = location["physicalLocation"];
    const std::string uri = place["artifactLocation"]["uri"].GetString();
    EXPECT_FALSE(uri.empty());
    EXPECT_EQ(uri.find_first_of(" \\:<>\"{}|^`"), uri.npos) << uri << ": relative, and escaped";
    EXPECT_GE(place["region"]["startLine"].GetUint(), 1U);
    if (place["region"].HasMember("startColumn")) {
      EXPECT_GE(place["region"]["startColumn"].GetUint(), 1U);
    }
  }

  rapidjson::Document log_;
};

TEST(GateOutputs, SarifIsWhatTheStandardRequires) {
  const GateReport report = OddReport();
  const SarifCheck sarif(Written([&](ResultOutput& output) { WriteSarif(report, {}, output); }));
  EXPECT_EQ(sarif.Results().Size(), report.findings.size());
  EXPECT_STREQ(sarif.Run()["automationDetails"]["id"].GetString(), "velkor/fw/");
  EXPECT_STREQ(
      sarif.Results()[0]["locations"][0]["physicalLocation"]["artifactLocation"]["uri"].GetString(),
      "fw/my%20src/a,b%3Ac%25d.c");
  EXPECT_TRUE(sarif.Results()[0].HasMember("codeFlows"));
}

TEST(GateOutputs, ServicesGetNoMoreThanTheyTakeAndTheWorst) {
  const GateReport report = ManyFindings(30'000);
  const std::string text = Written([&](ResultOutput& output) { WriteSarif(report, {}, output); });
  EXPECT_LT(text.size(), 10'000'000U);
  const SarifCheck sarif(text);
  EXPECT_LE(sarif.Results().Size(), 25'000U);
  EXPECT_GT(sarif.Results().Size(), 5'000U);
  EXPECT_STREQ(sarif.Results()[0]["ruleId"].GetString(), "over-budget");
  EXPECT_NE(std::string(sarif.Results()[0]["message"]["text"].GetString()).find("finding 29999"),
            std::string::npos);
  const std::string told =
      std::string(sarif.Run()["invocations"][0]["toolExecutionNotifications"][0]["message"]["text"]
                      .GetString());
  EXPECT_TRUE(told.starts_with(std::to_string(30'000 - sarif.Results().Size()) + " more findings"))
      << told;
  // As many results as are let, where they are small.
  GateReport small = ManyFindings(30'000);
  for (Finding& finding : small.findings) {
    finding.text = "x";
    finding.help = "y";
    finding.steps.clear();
  }
  const SarifCheck full(Written([&](ResultOutput& output) { WriteSarif(small, {}, output); }));
  EXPECT_EQ(full.Results().Size(), 25'000U);

  const std::string github =
      Written([&](ResultOutput& output) { WriteGithubAnnotations(report, output); });
  std::map<std::string, int> kinds;
  std::istringstream lines(github);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("::")) {
      ++kinds[line.substr(2, line.find(' ') - 2)];
    }
  }
  EXPECT_EQ(kinds, (std::map<std::string, int>{{"error", 10}, {"warning", 10}}));
  EXPECT_TRUE(
      github.starts_with("::error file=src/file.c,line=30000,col=1,title=velkor%3A "
                         "over-budget::finding 29999"))
      << github.substr(0, 200);
  EXPECT_NE(github.find("::error title=velkor::19991 more of this kind"), std::string::npos);
}

TEST(GateOutputs, AnnotationsHoldNothingThatEndsThem) {
  const std::string text =
      Written([&](ResultOutput& output) { WriteGithubAnnotations(OddReport(), output); });
  EXPECT_TRUE(text.starts_with("::error file=fw/my src/a%2Cb%3Ac%25d.c,line=7,col=3,title="))
      << text;
  EXPECT_EQ(std::ranges::count(text, '\n'), 4) << text;
  EXPECT_NE(text.find("u::@v%25,"), std::string::npos) << text;
}

TEST(GateOutputs, AQualityReportHasItsFields) {
  const GateReport report = OddReport();
  const rapidjson::Document json =
      Parsed(Written([&](ResultOutput& output) { WriteGitlabReport(report, output); }));
  ASSERT_EQ(json.Size(), report.findings.size());
  std::set<std::string> fingerprints;
  for (const Json& issue : json.GetArray()) {
    EXPECT_GT(issue["description"].GetStringLength(), 0U);
    EXPECT_GT(issue["check_name"].GetStringLength(), 0U);
    EXPECT_TRUE(fingerprints.insert(issue["fingerprint"].GetString()).second);
    const std::string severity = issue["severity"].GetString();
    EXPECT_TRUE((std::set<std::string>{"info", "minor", "major", "critical", "blocker"})
                    .contains(severity));
    const std::string path = issue["location"]["path"].GetString();
    EXPECT_FALSE(path.empty() || path.starts_with("/") || path.starts_with("./")) << path;
    EXPECT_GE(issue["location"]["lines"]["begin"].GetUint(), 1U);
  }
}

TEST(GateOutputs, FingerprintsStayWhereLinesAndFiguresChange) {
  Finding finding = OddReport().findings[0];
  const std::string before = finding.Fingerprint();
  finding.place = {"elsewhere.c", 1, 1};
  finding.text = "another number";
  finding.weight = 7;
  EXPECT_EQ(finding.Fingerprint(), before);
  finding.stack = "another";
  EXPECT_NE(finding.Fingerprint(), before);
  // What ends one part does not begin the next.
  Finding left;
  left.rule = "a";
  left.stack = "bc";
  Finding right;
  right.rule = "ab";
  right.stack = "c";
  EXPECT_NE(left.Fingerprint(), right.Fingerprint());
}

TEST(GateOutputs, TheMarkdownAnswersInItsHeading) {
  GateReport report = OddReport();
  const auto markdown = [&] {
    return Written([&](ResultOutput& output) { WriteGateMarkdown(report, output); });
  };
  const std::string text = markdown();
  EXPECT_TRUE(text.starts_with("### Stack: 1 over budget, 1 without a bound\n\n| State |")) << text;
  EXPECT_NE(text.find("| over-budget | s\\|1,:%  | ≥230 |  | 200 | -30 |\n"), std::string::npos)
      << text;
  EXPECT_NE(text.find("a\\|b 20 + &#60;i&#62;\\*x\\*&#60;/i&#62; 30"), std::string::npos) << text;
  EXPECT_EQ(text.find('@'), text.npos) << "nobody is called";
  for (GateStack& stack : report.stacks) {
    stack.state = StackState::kOk;
    stack.change = 0;
  }
  report.findings.clear();
  report.hasBaseline = true;
  report.baselineCommit = "0123456789abcdef";
  report.commit = "fedcba9876543210";
  EXPECT_EQ(markdown(), "### Stack: nothing changed (0123456 → fedcba9)\n");
  report.stacks[0].state = report.stacks[1].state = StackState::kRegression;
  report.stacks[1].lostBound = true;
  EXPECT_TRUE(markdown().starts_with("### Stack: 1 lost its bound, 1 grew (")) << markdown();
  report.stacks[0].state = report.stacks[1].state = StackState::kOk;
  report.stacks[0].change = 12;
  EXPECT_NE(markdown().find("<details><summary>1 unchanged</summary>"), std::string::npos);
}

TEST(GateOutputs, TheTextIsALineAFinding) {
  const std::string text =
      Written([&](ResultOutput& output) { WriteGateText(OddReport(), output); });
  EXPECT_TRUE(text.starts_with(
      "fw/my src/a,b:c%d.c:7:3: error: stack s|1,:%  needs at least 230 of 200 bytes: 30 too many "
      "[over-budget]\n  main 100 + a|b 20 + <i>*x*</i> 30 + [u::@v%,] 0 + frame 36 + switch 44 = "
      "at "
      "least 230\n"))
      << text;
  EXPECT_TRUE(text.ends_with("2 stacks (2 without a bound), 2 errors, 1 warning: not passed\n")) << text;
  // A long path is cut in its smallest parts, and still adds up.
  std::string graph;
  for (int i = 0; i < 40; ++i) {
    graph += "f" + std::to_string(i) + " " + std::to_string(100 - i) +
             (i < 39 ? " -> f" + std::to_string(i + 1) + "\n" : "\n");
  }
  GateCase deep(graph);
  const GateReport report =
      deep.Check("frame = 1\nswitch = 2\n[stack.d]\nentry = \"f0\"\nsize = 10\n");
  EXPECT_TRUE(
      report.findings[0].rows.ends_with("+ f9 91 + (30 more) 2265 + frame 1 + switch 2 = 3223"))
      << report.findings[0].rows;
  const std::string many =
      Written([&](ResultOutput& output) { WriteGateText(ManyFindings(300), output); });
  EXPECT_NE(many.find("80 more findings of unlisted-task"), std::string::npos);
}

TEST(GateOutputs, JsonHoldsEverything) {
  const GateReport report = OddReport();
  const std::string text = Written([&](ResultOutput& output) { WriteGateJson(report, output); });
  EXPECT_EQ(testing::SchemaFault("check", text), "");
  const rapidjson::Document json = Parsed(text);
  EXPECT_FALSE(json["passed"].GetBool());
  const Json& stack = json["stacks"][0];
  EXPECT_STREQ(stack["state"].GetString(), "over-budget");
  EXPECT_TRUE(stack["need"].IsNull());
  uint64_t sum = 0;
  for (const Json& row : stack["rows"].GetArray()) {
    sum += row["bytes"].GetUint64();
  }
  EXPECT_EQ(sum, stack["known"].GetUint64());
  EXPECT_EQ(stack["free"].GetInt64(), -30);
  EXPECT_EQ(json["findings"].Size(), report.findings.size());
  EXPECT_EQ(json["findings"][0]["line"].GetUint(), 7U);
  for (const GateRule& rule : GateRules()) {
    EXPECT_EQ(FindGateRule(rule.name), &rule) << "in order";
  }
}

}  // namespace
}  // namespace velkor::reports
