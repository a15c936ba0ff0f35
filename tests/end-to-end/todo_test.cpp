#include <algorithm>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <rapidjson/document.h>
#include <regex>
#include <sstream>

#include "program.h"
#include "scratch_folder.h"

namespace velkor {
namespace {

using testing::ModuleText;
using testing::Program;
using testing::ProgramRun;
using testing::ProjectText;
using testing::ScratchFolder;

// A file of "todo", taken apart: for each step how many functions it frees and its lines without
// the mark of a comment.
struct Step {
  uint32_t frees = 0;
  std::vector<std::string> lines;
};

std::vector<Step> Steps(const std::string& file) {
  std::vector<Step> steps;
  std::istringstream lines(file);
  for (std::string line; std::getline(lines, line);) {
    EXPECT_TRUE(line.empty() || line.front() == '#') << line;
    const std::string heading = "# " + std::to_string(steps.size() + 1) + ": ";
    if (line.starts_with(heading)) {
      const std::string frees = heading + "frees ";
      const bool now = line.starts_with(frees) && !line.starts_with(frees + "none");
      EXPECT_TRUE(line.starts_with(frees) || line.find(" a bound once steps ") != line.npos)
          << line;
      steps.push_back({now ? static_cast<uint32_t>(std::stoul(line.substr(frees.size()))) : 0, {}});
    } else if (!steps.empty() && line.size() > 1 && line[1] != ' ') {
      steps.back().lines.push_back(line.substr(1));
    }
  }
  return steps;
}

std::string Filled(std::string line, const std::string& callee) {
  const auto fill = [&line](const std::string& attribute, const std::string& value) {
    for (const std::string& end : {std::string(","), std::string()}) {
      const size_t at = line.rfind(attribute + end);
      if (at != std::string::npos && (!end.empty() || at + attribute.size() == line.size())) {
        line.insert(at + attribute.size(), value);
      }
    }
  };
  fill(" ADD=", "16");
  fill(" RECTIME=", "2");
  fill(" CALL=", callee);
  return line + "\n";
}

// The top-level functions without a bound. The last five columns of a row hold no comma.
uint32_t Unbounded(const std::string& project, const std::vector<std::string>& load) {
  std::vector<std::string> arguments = {"analyze", project, "--format", "csv"};
  for (const std::string& file : load) {
    arguments.insert(arguments.end(), {"--load", file});
  }
  const ProgramRun run = Program(arguments).Run();
  EXPECT_LE(run.status, 1) << run.err;
  std::istringstream rows(run.out);
  const std::regex unbounded(",yes,(yes|no),,unbounded,[0-9]+");
  uint32_t count = 0;
  for (std::string row; std::getline(rows, row);) {
    count += std::regex_search(row, unbounded) ? 1U : 0U;
  }
  return count;
}

std::string LeafOf(const std::string& project) {
  rapidjson::Document analysis;
  analysis.Parse(Program({"analyze", project, "--format", "json"}).Run().out.c_str());
  for (const auto& function : analysis["functions"].GetArray()) {
    if (function["boundState"] == "bounded" && function["callees"].Empty() &&
        function["defined"].GetBool()) {
      return function["statement"].GetString();
    }
  }
  ADD_FAILURE() << "every function calls another";
  return {};
}

// The first column of the rows below "Why".
uint64_t SumOfWhy(const std::string& answer) {
  const size_t why = answer.find("\nWhy ");
  std::istringstream lines(answer.substr(std::min(why, answer.size())));
  const std::regex row("^ {1,9}([0-9]+) .*|^([0-9]{10,}) .*");
  uint64_t sum = 0;
  std::smatch match;
  for (std::string line; std::getline(lines, line) && !line.starts_with("What to state");) {
    if (std::regex_match(line, match, row)) {
      sum += std::stoull(match[1].str() + match[2].str());
    }
  }
  return sum;
}

// The file loads as it is and changes nothing; with the first steps filled in it frees what they
// promise, and with all of them everything.
void ExpectPromisesHold(const std::string& project, size_t everyStep) {
  const ScratchFolder folder;
  const std::string file = folder.Path("todo.txt");
  ASSERT_LE(Program({"todo", project, "--output", file}).Run().status, 1);
  const std::string text = testing::ReadFile(file);
  EXPECT_EQ(Program({"todo", project}).Run().out, text);
  const std::vector<Step> steps = Steps(text);
  ASSERT_FALSE(steps.empty());
  const std::string leaf = LeafOf(project);
  uint32_t unbounded = Unbounded(project, {file});
  EXPECT_EQ(unbounded, Unbounded(project, {}));
  std::string filled;
  for (size_t i = 0; i < steps.size(); ++i) {
    for (const std::string& line : steps[i].lines) {
      filled += Filled(line, leaf);
    }
    unbounded -= steps[i].frees;
    if (i % everyStep == 0 || i + 1 == steps.size()) {
      EXPECT_EQ(Unbounded(project, {folder.Put("filled.txt", filled)}), unbounded) << filled;
    }
  }
  EXPECT_EQ(unbounded, 0U);
  const ProgramRun nothing = Program({"todo", project, "--load", folder.Path("filled.txt")}).Run();
  EXPECT_EQ(Steps(nothing.out).size(), 0U) << nothing.out;
}

// Real programs: those of the examples, and those of the folder beside the repository, where there
// is one.
class Corpus : public ::testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(input_)) {
      GTEST_SKIP() << input_ << " is not there";
    }
  }

  const std::string input_ = std::string(VELKOR_SOURCE_DIR) + "/" + GetParam();
};

TEST_P(Corpus, StatementsFreeWhatTheyPromise) {
  ExpectPromisesHold(input_, GetParam().find("lua") != std::string::npos ? 40 : 10);
}

// As explain says and as the answer shows it, where long paths are cut short.
TEST_P(Corpus, RowsOfWhyAddUpToTheNumber) {
  rapidjson::Document analysis;
  analysis.Parse(Program({"analyze", input_, "--format", "json"}).Run().out.c_str());
  std::vector<std::pair<uint64_t, std::string>> entries;
  for (const auto& function : analysis["functions"].GetArray()) {
    if (function["topLevel"].GetBool()) {
      entries.emplace_back(function["known"].GetUint64(), function["statement"].GetString());
    }
  }
  std::ranges::sort(entries, std::greater());
  entries.resize(std::min<size_t>(entries.size(), 10));
  for (const auto& [known, name] : entries) {
    rapidjson::Document explained;
    explained.Parse(Program({"explain", input_, name, "--format", "json"}).Run().out.c_str());
    EXPECT_EQ(explained["value"].GetUint64(), known) << name;
    uint64_t sum = 0;
    for (const auto& row : explained["rows"].GetArray()) {
      sum += row["bytes"].GetUint64();
    }
    EXPECT_EQ(sum, known) << name;
    EXPECT_EQ(SumOfWhy(Program({"analyze", input_, "--function", name}).Run().out), known) << name;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Real, Corpus,
    ::testing::Values("examples/firmware/app.prj", "examples/lua/app.prj",
                      "../shared/corpus/lua/app.prj", "../shared/corpus/littlefs/app.prj",
                      "../shared/corpus/gcc/lua/native", "../shared/corpus/gcc/lua/arm",
                      "../shared/corpus/gcc/littlefs/native", "../shared/corpus/gcc/littlefs/arm",
                      "../shared/corpus/gcc/micro/basic-arm",
                      "../shared/corpus/gcc/micro/cpp-native",
                      "../shared/corpus/gcc/micro/lto-native-1to1",
                      "../shared/corpus/gcc/micro/weak-arm"),
    [](const ::testing::TestParamInfo<std::string>& tested) {
      return std::regex_replace(tested.param, std::regex("[^A-Za-z0-9]+"), "_");
    });

// main goes round with step, which calls through a pointer, and has been adjusted before.
TEST(Todo, SaysWhatIsKnownOfEachCauseAndKeepsWhatIsStated) {
  const ScratchFolder folder;
  std::string module = ModuleText("a.c", {{"main", "4", {"step", "sure"}},
                                          {"step", "6", {"main", "memcpy", ""}},
                                          {"isr", "8", {"driver", ""}},
                                          {"other", "8", {"isr", "driver"}},
                                          {"sure", "8", {}}});
  module.replace(module.find("$CALL ()"), 8, "$CALL pfn_step()");
  folder.Put("a.asm", module);
  folder.Put("app.psg", "main, ADD=7\nisr, CALL=sure\n");
  const std::string project = folder.Put("app.prj", ProjectText(".", {"a.c"}, "Librarychk=1\n"));
  const std::string out = Program({"todo", project}).Run().out;
  EXPECT_EQ(out.substr(out.find("\n\n") + 2),
            "# 1: frees 1\n"
            "# [driver] is not defined in the project; called by isr, other\n"
            "#[driver], ADD=\n\n"
            "# 2: 1 more has a bound once steps 2 and 3 are stated; a recursion of 2 functions, "
            "limited by 1: main, step\n"
            "#main, ADD=7, RECTIME=\n\n"
            "# 3: frees 1\n"
            "# step calls through a pointer pfn_step\n"
            "#step, CALL=\n");
  const ProgramRun none = Program({"todo", project, "--output", project}).Run();
  EXPECT_EQ(none.status, 4) << "what the analysis is made from is not written over";
  EXPECT_NE(none.err.find("W9402 "), std::string::npos) << none.err;
}

// Whatever a function is called, its line states it once its mark is gone, or nothing is stated.
TEST(Todo, NamesOfAnyBytes) {
  const ScratchFolder folder;
  const std::vector<std::string> names = {"a\"b",       "x, ADD=1", "#hash",
                                          "a\x1B[31m",  "<b>&amp;", "_",
                                          "ns::f(int)", "a\xFF",    std::string(1000, 'n')};
  std::vector<testing::ModuleFunction> functions;
  for (const std::string& name : names) {
    functions.push_back({name, "4", {name, ""}});
  }
  functions.push_back({"leaf", "4", {}});
  folder.Put("a.asm", ModuleText("a \"b\",\x1B#.c", functions));
  const std::string project = folder.Put("app.prj", ProjectText(".", {"a.c"}));
  ExpectPromisesHold(project, 1);

  folder.Put("a.asm", ModuleText("a.c", {{std::string(5000, 'n'), "4", {""}}}));
  const ProgramRun run = Program({"todo", project}).Run();
  EXPECT_NE(run.out.find("n... cannot be named in a specification file\n"), std::string::npos);
  EXPECT_TRUE(Steps(run.out).front().lines.empty()) << run.out;
}

}  // namespace
}  // namespace velkor
