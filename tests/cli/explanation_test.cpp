#include <filesystem>
#include <gtest/gtest.h>
#include <random>
#include <rapidjson/document.h>
#include <sstream>

#include "cli/application.h"
#include "core/bound_arithmetic.h"
#include "reports/analysis.h"
#include "reports/answer_output.h"
#include "reports/chain_output.h"
#include "reports/entry_ranking.h"
#include "reports/explanation_output.h"
#include "support/json_schema.h"

namespace velkor::cli {
namespace {

using testing::Analysis;
using testing::Written;

rapidjson::Document Json(const reports::AnalysisResult& result, uint32_t function) {
  const std::string text = Written([&](reports::ResultOutput& output) {
    reports::WriteExplanationJson(result, function, output);
  });
  EXPECT_EQ(testing::SchemaFault("explain", text), "") << text;
  rapidjson::Document document;
  document.Parse(text.c_str());
  return document;
}

uint64_t BytesOfCalls(const rapidjson::Value& row) {
  uint64_t sum = 0;
  for (const auto& call : row["calls"].GetArray()) {
    sum += call["bytes"].GetUint64();
  }
  return sum;
}

void ExpectJsonAddsUp(const reports::AnalysisResult& result, uint32_t function) {
  const reports::AnalysedFunction& analysed = result.functions[function];
  const rapidjson::Document document = Json(result, function);
  EXPECT_EQ(document["value"].GetUint64(), analysed.known);
  EXPECT_EQ(document["state"].GetString(), BoundStateName(analysed.state));
  EXPECT_EQ(document["function"].GetString(), result.SpecName(function));
  uint64_t sum = 0;
  for (const auto& row : document["rows"].GetArray()) {
    const uint64_t times = row["times"].GetUint64();
    const uint64_t bytes = row["bytes"].GetUint64();
    if (analysed.known < kMaxBound) {
      EXPECT_EQ(bytes % times, 0U);
      EXPECT_LE(BytesOfCalls(row), bytes / times);
    }
    sum += bytes;
  }
  EXPECT_EQ(sum, document["value"].GetUint64());
}

// The numbers of a block in the text's first column below its first line; the first line's number.
std::pair<uint64_t, uint64_t> ColumnOf(std::istringstream& lines) {
  std::string line;
  std::getline(lines, line);
  const size_t digits = line.find_first_of("0123456789");
  const uint64_t stated = digits == line.npos ? 0 : std::stoull(line.substr(digits));
  uint64_t sum = 0;
  while (std::getline(lines, line) && !line.empty()) {
    const bool isRow = line.find_first_not_of(' ') < 10;
    sum += isRow ? std::stoull(line) : 0;
  }
  return {stated, sum};
}

std::istringstream BelowHeading(const std::string& text) {
  return std::istringstream(text.substr(text.find("  Function\n") + 11));
}

void ExpectTextAddsUp(const reports::AnalysisResult& result, uint32_t function) {
  std::istringstream lines = BelowHeading(Written(
      [&](reports::ResultOutput& output) { reports::WriteExplanation(result, function, output); }));
  const auto [stated, sum] = ColumnOf(lines);
  EXPECT_EQ(stated, result.functions[function].known);
  EXPECT_EQ(sum, stated);
}

// On one screen, where long lists are cut.
void ExpectAnswerAddsUp(const reports::AnalysisResult& result, uint32_t function) {
  const std::string text = Written([&](reports::ResultOutput& output) {
    reports::WriteAnswer(result, {}, {.top = 10, .function = function}, output);
  });
  std::istringstream lines(text.substr(text.find("\nWhy ") + 1));
  std::string line;
  std::getline(lines, line);
  const std::string known = std::to_string(result.functions[function].known);
  EXPECT_TRUE(line.ends_with(" " + known + " bytes")) << line;
  const auto [none, sum] = ColumnOf(lines);
  EXPECT_EQ(std::to_string(sum), known) << text;
}

std::string Chains(const reports::AnalysisResult& result, bool full) {
  return Written(
      [&](reports::ResultOutput& output) { reports::WriteChains(result, full, output); });
}

// The text of the whole analysis, whose long lists are cut.
void ExpectChainsAddUp(const reports::AnalysisResult& result) {
  std::istringstream lines = BelowHeading(Chains(result, false));
  for (const uint32_t root : LargestFirst(result)) {
    const auto [stated, sum] = ColumnOf(lines);
    EXPECT_EQ(stated, result.functions[root].known);
    EXPECT_EQ(sum, stated);
  }
}

void ExpectAllAddUp(const reports::AnalysisResult& result) {
  for (uint32_t function = 0; function < result.functions.size(); ++function) {
    ExpectJsonAddsUp(result, function);
    ExpectTextAddsUp(result, function);
    ExpectAnswerAddsUp(result, function);
  }
  ExpectChainsAddUp(result);
}

using Random = std::mt19937;

uint32_t Below(Random& random, uint32_t end) {
  return static_cast<uint32_t>(random() % end);
}

std::string RandomGraph(Random& random) {
  const uint32_t count = 1 + Below(random, 9);
  std::string text;
  for (uint32_t i = 0; i < count; ++i) {
    text += "f" + std::to_string(i) + " " + std::to_string(Below(random, 300)) + " ->";
    std::vector<bool> called(count + 1);
    for (uint32_t calls = Below(random, 4); calls > 0; --calls) {
      called[Below(random, count + 1)] = true;  // one of them is unknown
    }
    for (uint32_t callee = 0; callee < called.size(); ++callee) {
      text += called[callee] ? " f" + std::to_string(callee) : "";
    }
    text += "\n";
  }
  return text;
}

void StateAtRandom(Analysis& analysis, Random& random) {
  constexpr uint32_t kDepths[] = {kNoDepth, 1, 1, 2, 3, 70000, 4294967295};
  for (StkFunction* function : analysis.graph.functions.Functions()) {
    function->flags |= Below(random, 12) == 0 && function->Is(FN_DEFINED) ? FN_INDIRECT_CALL : 0U;
    if (Below(random, 2) == 0) {
      const uint32_t margin = Below(random, 2) == 0 ? kNoMargin : Below(random, 65536);
      const uint32_t depth = kDepths[Below(random, std::size(kDepths))];
      analysis.Adjust(*function, margin, function->Is(FN_RECURSIVE) ? depth : kNoDepth);
    }
  }
  analysis.Compute();
}

TEST(Explain, AddsUpForEveryFunctionOfRandomProjects) {
  uint32_t settled = 0;
  for (uint32_t seed = 0; seed < 500 && !::testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    Random random(seed);
    Analysis analysis(RandomGraph(random));
    StateAtRandom(analysis, random);
    for (const RecursionGroup& group : analysis.bounds.Groups()) {
      settled += group.settled ? 1 : 0;
    }
    ExpectAllAddUp(analysis.Result());
  }
  EXPECT_GT(settled, 100U);
}

// Those that lie beside the sources are looked at where they are.
TEST(Explain, AddsUpForEveryFunctionOfRealProjects) {
  const std::string source = VELKOR_SOURCE_DIR;
  for (const std::string place :
       {"/examples/firmware", "/examples/lua", "/../shared/corpus/littlefs"}) {
    Options options;
    options.project = source + place + "/app.prj";
    if (!std::filesystem::exists(options.project)) {
      continue;
    }
    SCOPED_TRACE(place);
    ::testing::internal::CaptureStderr();
    std::string error;
    const auto application = Application::Create(options, error);
    ASSERT_NE(application, nullptr) << error;
    EXPECT_EQ(application->OpenAndAnalyse(options), kDone);
    ::testing::internal::GetCapturedStderr();
    const reports::AnalysisResult result = application->Result();
    EXPECT_GT(result.functions.size(), 20U);
    ExpectAllAddUp(result);
  }
}

// A chain "f0 2 -> f1" and so on, whose last function calls the one stated.
std::string Chain(const std::string& name, int length, const std::string& last) {
  std::string text;
  for (int i = 0; i < length; ++i) {
    text += name + std::to_string(i) + " 2 -> " +
            (i + 1 < length ? name + std::to_string(i + 1) : last) + "\n";
  }
  return text;
}

void ExpectParts(const std::string& text, const std::vector<std::string>& parts) {
  for (const std::string& part : parts) {
    EXPECT_NE(text.find(part), std::string::npos) << part << text.substr(0, 10000);
  }
}

// Ways from one counted function to the next are cut like long chains, and so are the rows.
TEST(Explain, LongListsAreCutWithTheirBytes) {
  Analysis ring("main 1 -> a\na 10 -> p0\n" + Chain("p", 100, "a"));
  ring.Adjust(ring.graph["a"], kNoMargin, 3);
  ring.Compute();
  ExpectParts(Chains(ring.Result(), false),
              {"       631  ", "       630                  10    a*  *3  (3 times 210)\n",
               "  120  ... 60 functions left out, --full shows them\n"});
  ExpectParts(Chains(ring.Result(), true), {"  2  p50*\n"});

  Analysis chain(Chain("f", 3001, "f2990"));
  ExpectChainsAddUp(chain.Result());
  ExpectParts(
      Chains(chain.Result(), false),
      {"     ≥5982      6002         2  f0\n",
       "      5902                        ... 2951 functions left out, --full shows them\n",
       "         2                   2    f2990*\n",
       "recursion that no depths limit: f2990, f2991, f2992, f2993, f2994, f2995, f2996, f2997, "
       "f2998, f2999 and 1 more\n"});
  const std::string full = Chains(chain.Result(), true);
  ExpectParts(full, {" f1500\n"});
  EXPECT_EQ(full.find("left out"), std::string::npos);
}

}  // namespace
}  // namespace velkor::cli
