#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <rapidjson/document.h>
#include <regex>

#include "program.h"
#include "scratch_folder.h"

namespace velkor {
namespace {

using testing::ModuleFunction;
using testing::ModuleText;
using testing::Program;
using testing::ProgramRun;
using testing::ProjectText;
using testing::ReadFile;
using testing::ScratchFolder;
namespace fs = std::filesystem;

void CopyFolder(const std::string& from, const ScratchFolder& to) {
  for (const auto& entry : fs::recursive_directory_iterator(from)) {
    if (entry.is_regular_file()) {
      to.Put(fs::relative(entry.path(), from).string(), ReadFile(entry.path()));
    }
  }
}

std::string Example(const std::string& name) {
  return (fs::path(VELKOR_SOURCE_DIR) / "examples/stacks" / name).string();
}

class Check : public ::testing::Test {
 protected:
  void Use(const std::string& example) { CopyFolder(Example(example), folder_); }
  ProgramRun Run(std::vector<std::string> arguments = {}) const {
    arguments.insert(arguments.begin(), "check");
    return Program(std::move(arguments)).In(folder_.Root()).Run();
  }
  void Replace(const std::string& file, const std::string& from, const std::string& to) const {
    std::string text = ReadFile(folder_.Path(file));
    ASSERT_NE(text.find(from), text.npos) << from;
    folder_.Put(file, text.replace(text.find(from), from.size(), to));
  }

  ScratchFolder folder_;
};

// The sums stand in docs/gate.md.
TEST_F(Check, AddsUpTheWorkedExamples) {
  const std::vector<std::pair<std::string, std::string>> examples = {
      {"avr", "main         201 of 256 bytes       55 free                ok\n"},
      {"cortex-m",
       "msp         292 of 512 bytes       220 free               ok\n"
       "rx          336 of 384 bytes       48 free                ok\n"},
      {"risc-v", "main         352 of 512 bytes       160 free               ok\n"}};
  for (const auto& [name, stacks] : examples) {
    const ProgramRun run = Program({"check"}).In(Example(name)).Run();
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_TRUE(run.out.starts_with(stacks)) << run.out;
  }
}

TEST_F(Check, EndsWithFiveWhereAStackIsNotAsItShouldBe) {
  Use("cortex-m");
  EXPECT_EQ(Run().status, 0);
  Replace("velkor.toml", "size = 384", "size = 335");
  const ProgramRun failing = Run();
  EXPECT_EQ(failing.status, 5);
  EXPECT_TRUE(failing.out.starts_with(
      "velkor.toml:10:8: error: stack rx needs 336 of 335 bytes: 1 too many [over-budget]\n"
      "  task_rx 24 + parse_frame 236 + frame 36 + switch 40 = 336\n"))
      << failing.out;
  EXPECT_EQ(Run({"--no-fail"}).status, 0);
  EXPECT_EQ(Run({"--no-fail"}).out, failing.out);
  for (const char* format : {"text", "json", "sarif", "github", "gitlab", "markdown"}) {
    const ProgramRun run = Run({"--format", format});
    EXPECT_EQ(run.status, 5) << format;
    EXPECT_NE(run.out.find("needs 336 of 335 bytes"), run.out.npos) << run.out;
    const ProgramRun file = Run({"--format", format, "--output", "out.txt"});
    EXPECT_EQ(file.status, 5);
    EXPECT_EQ(ReadFile(folder_.Path("out.txt")), run.out) << "the same bytes";
  }
  EXPECT_EQ(Run({"--output", "none/out.txt"}).status, 4);
  EXPECT_EQ(Program({"check"}).In(folder_.Root()).OutputTo("/dev/full").Run().status, 4);

  // With the source at hand, it is shown there.
  folder_.Put("main.c", "");
  EXPECT_TRUE(Run().out.starts_with("main.c:60: error: stack rx needs")) << Run().out;
}

TEST_F(Check, NeedsNoConfigurationForLimits) {
  Use("avr");
  EXPECT_EQ(Run({"build"}).status, 2) << "nothing says how large a stack is";
  EXPECT_EQ(Run({"build", "--limit", "main=180"}).status, 0);
  const ProgramRun failing = Run({"build", "--limit", "main=179", "--limit", "__vector_11=21"});
  EXPECT_EQ(failing.status, 5);
  EXPECT_EQ(std::ranges::count(failing.out, '\n'), 7) << failing.out;
  EXPECT_EQ(Run({"--limit", "main=180"}).status, 0) << "beside the stacks of velkor.toml";
  EXPECT_EQ(Run({"--limit", "main=179"}).status, 5);
  EXPECT_EQ(Run({"build", "--limit", "gone=10"}).status, 5);
  for (const char* limit :
       {"main", "main=", "=5", "main=x", "main=-1", "main=0", "main=9999999999"}) {
    const ProgramRun wrong = Run({"build", "--limit", limit});
    EXPECT_EQ(wrong.status, 2) << limit;
    EXPECT_NE(wrong.err.find("ENTRY=BYTES"), wrong.err.npos) << wrong.err;
  }
}

TEST_F(Check, KeepsABaselineThatAReviewReads) {
  Use("cortex-m");
  EXPECT_EQ(Run({"--baseline", "none.json"}).status, 3);
  EXPECT_EQ(Run({"--update-baseline"}).status, 0);
  const std::string baseline = ReadFile(folder_.Path("velkor.baseline.json"));
  EXPECT_NE(baseline.find("\n{\"name\":\"rx\",\"bounded\":true,\"bytes\":336,"), baseline.npos)
      << baseline;
  EXPECT_EQ(Run({"--update-baseline"}).status, 0);
  EXPECT_EQ(ReadFile(folder_.Path("velkor.baseline.json")), baseline);
  EXPECT_EQ(Run().status, 0);

  Replace("velkor.toml", "[gate]", "[gate]\ngrowth = 4");
  Replace("build/main.ci", "236 bytes", "244 bytes");
  const ProgramRun grown = Run();
  EXPECT_EQ(grown.status, 5);
  EXPECT_NE(
      grown.out.find("stack rx needs 344 bytes, 8 more than before: parse_frame 236 -> 244, by "
                     "task_rx > parse_frame [regression]"),
      grown.out.npos)
      << grown.out;
  fs::create_directory(folder_.Path("old"));
  fs::rename(folder_.Path("velkor.baseline.json"), folder_.Path("old/base.json"));
  EXPECT_EQ(Run().status, 0) << "there is none";
  EXPECT_EQ(Run({"--baseline", "old/base.json"}).out, grown.out);
  EXPECT_EQ(Run({"--update-baseline", "--baseline", "old/base.json"}).status, 0);

  // An unreadable one is no reason to pass.
  const std::string whole = ReadFile(folder_.Path("old/base.json"));
  const std::vector<std::pair<std::string, std::string>> wrong = {
      {whole.substr(0, whole.size() - 3), "old/base.json:"},
      {std::regex_replace(whole, std::regex("\"schema\": 1"), "\"schema\": 9"),
       "old/base.json:1:1: this velkor knows schema 1"},
      {std::regex_replace(whole, std::regex("velkor.toml"), "other/app.toml"),
       "is the baseline of another project, other/app.toml"}};
  for (const auto& [text, message] : wrong) {
    folder_.Put("old/base.json", text);
    const ProgramRun run = Run({"--baseline", "old/base.json"});
    EXPECT_EQ(run.status, 3);
    EXPECT_NE(run.err.find(message), run.err.npos) << run.err;
    EXPECT_EQ(run.out, "");
  }
  EXPECT_EQ(Run({"build", "--limit", "main=999", "--update-baseline"}).status, 2) << "where?";
}

// Each with its line and column; nothing is checked by halves.
TEST_F(Check, SaysWhereAVelkorTomlIsWrong) {
  Use("cortex-m");
  const std::string good = ReadFile(folder_.Path("velkor.toml"));
  struct Wrong {
    std::string from;
    std::string to;
    int status;
    std::string message;
  };
  const std::vector<Wrong> wrong = {
      {"size = 384", "siz = 384", 3, "line 12, column 1: unknown key \"siz\"; near it: \"size\""},
      {"size = 384", "size = -1", 3, "line 12, column 8: a number from 0 to 2147483647"},
      {"size = 384", "size = true", 3, "line 12, column 8: "},
      {"size = 384", "size = \"?\"", 2, "velkor.toml:12:1: the size of [stack.rx]"},
      {"size = 384", "", 2, "velkor.toml:10:8: the size of [stack.rx]"},
      {"entry = \"task_rx\"", "", 3, "line 10, column 8: \"entry\" of [stack.rx] is missing"},
      {"[stack.rx]", "[stack.msp]", 3, "line 10, column "},
      {"\"TIM1_IRQHandler\"", "\"SPI_IRQHandler\"", 2,
       "velkor.toml:18:4: the handler \"SPI_IRQHandler\" is named twice"},
      {"stack = \"msp\"", "stack = \"ms\"", 3, "line 15, column 1: there is no [stack.ms]"},
      {"levels = [", "nesting = 2\nlevels = [", 3, "line 16, column 1: \"levels\" and \"nesting\""},
      {"headroom = \"10%\"", "headroom = \"10\"", 3, "line 23, column 12: "},
      {"headroom = \"10%\"", "headroom = \"101%\"", 3, "line 23, column 12: "},
      {"schema = 1", "schema = 2", 3, "line 1, column 10: this velkor knows schema 1 only"},
      {"rtos = \"freertos\"", "rtos = \"none of these\"", 2, "velkor.toml:3:1: the bytes that a "},
      {"target = \"cortex-m4\"", "target = \"z80\"", 2, "velkor.toml:3:1: the bytes that the "},
      {"input = \"build\"", "input = \"nowhere\"", 3, "Cannot find a call graph file"},
      {"[gate]", "[calls]\nmain = { table = 7 }\n[gate]", 3, "line 23, column 18: a text"},
      {"[gate]", "[calls]\nmain = {}\n[gate]", 3, "line 23, column 8: \"table\" or \"total\""},
  };
  for (const Wrong& each : wrong) {
    folder_.Put("velkor.toml", good);
    Replace("velkor.toml", each.from, each.to);
    const ProgramRun run = Run();
    EXPECT_EQ(run.status, each.status) << each.to;
    EXPECT_NE(run.err.find(each.message), run.err.npos) << each.to << "\n" << run.err;
    EXPECT_EQ(run.out, "") << each.to;
  }
  // What the program lacks is a finding at its place.
  const std::vector<Wrong> lacking = {
      {"\"task_rx\"", "\"task_tx\"", 5,
       "velkor.toml:11:9: error: the entry of stack rx: \"task_tx\""},
      {"size = 384", "size = \"rx_stack\"", 5, "velkor.toml:12:1: error: the size of stack rx"},
      {"\"TIM1_IRQHandler\"", "\"TIM9_IRQHandler\"", 5, "velkor.toml:18:4: error: an interrupt"},
      {"[gate]", "[calls]\ngone = { total = 9 }\n[gate]", 5,
       "velkor.toml:23:1: error: gone of [calls]"},
      {"input = \"build\"", "input = \"build\"\nload = [\"../none.txt\"]", 5,
       "velkor.toml:3:1: error: W9400 Cannot find file"},
      {"input = \"build\"", "input = \"build\"\nelf = \"no.elf\"", 5,
       "velkor.toml:3:1: error: It could not be read [program-not-read]"},
  };
  for (const Wrong& each : lacking) {
    folder_.Put("velkor.toml", good);
    Replace("velkor.toml", each.from, each.to);
    const ProgramRun run = Run();
    EXPECT_EQ(run.status, each.status) << each.to;
    EXPECT_NE(run.out.find(each.message), run.out.npos) << each.to << "\n" << run.out;
  }
  folder_.Put("velkor.toml", good);
  folder_.Put("limits.txt", "main, ADD=x\n");
  const ProgramRun refused = Run({"--load", "limits.txt"});
  EXPECT_EQ(refused.status, 5) << refused.out;
  EXPECT_NE(refused.out.find("[statement-not-read]"), refused.out.npos) << refused.out;
  EXPECT_NE(Run({"."}).err.find("is: give " + folder_.Root()), std::string::npos);
  fs::remove(folder_.Path("velkor.toml"));
  const ProgramRun none = Run();
  EXPECT_EQ(none.status, 3);
  EXPECT_NE(none.err.find("init"), none.err.npos) << none.err;
}

TEST_F(Check, ChecksProjectsOfTheOtherCompilerWithStatedFigures) {
  folder_.Put("main.asm", ModuleText("main.c", {{"main", "100", {"step"}}, {"step", "20", {}}}));
  folder_.Put("isr.asm", ModuleText("isr.c", {{"isr", "30", {}}, {"rest", "4", {}}}));
  folder_.Put("app.prj", ProjectText(".", {"main.c", "isr.c"}));
  const std::string stacks =
      "input = \"app.prj\"\n[stack.main]\nentry = \"main\"\nsize = 160\n"
      "[interrupts]\nlevels = [[\"isr\"]]\n";
  folder_.Put("velkor.toml", stacks);
  EXPECT_EQ(Run().status, 2) << "the figures";
  folder_.Put("velkor.toml", "frame = 6\nswitch = 0\n" + stacks);
  const ProgramRun run = Run();
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(
      run.out,
      "velkor.toml:1:1: warning: nothing calls rest, and no stack and no level names it "
      "[unlisted-task]\n"
      "  name rest as the entry of a stack, in a level, or as what is called through a pointer "
      "(CALL=); or in ignore of [interrupts] if it never runs\n\n"
      "main         156 of 160 bytes       4 free                 ok\n"
      "1 stack, 0 errors, 1 warning: passed\n");
  // The numbers of functions alone would be taken for those of the stacks.
  const ProgramRun answer = Program({"analyze", "velkor.toml"}).In(folder_.Root()).Run();
  EXPECT_TRUE(answer.out.ends_with(
      "\nStacks of velkor.toml, interrupts counted (velkor-cli check says more)\n"
      "main         156 of 160 bytes       4 free                 ok\n"))
      << answer.out;
  fs::remove(folder_.Path("isr.asm"));
  const ProgramRun missing = Run();
  EXPECT_EQ(missing.status, 5);
  EXPECT_NE(missing.out.find("[module-missing]"), missing.out.npos) << missing.out;
  EXPECT_NE(missing.out.find("[entry-not-found]"), missing.out.npos) << missing.out;
}

// Of two functions of one name each may be the larger: none of them is taken.
TEST_F(Check, AnEntryThatCanMeanTwoFunctionsIsRefusedUntilItsFileIsNamed) {
  for (const char* file : {"rx", "tx"}) {
    const std::string title = std::string(file) + ".c";
    const int frame = file == std::string("rx") ? 200 : 40;
    folder_.Put("build/" + std::string(file) + ".ci",
                "graph: { title: \"" + title + "\"\nnode: { title: \"" + title +
                    ":poll\" label: \"poll\\n" + title + ":7:5\\n" + std::to_string(frame) +
                    " bytes (static)\" }\n}\n");
  }
  const std::string begin = "input = \"build\"\nframe = 0\nswitch = 0\n[stack.rx]\n";
  folder_.Put("velkor.toml", begin + "entry = \"poll\"\nsize = 128\n");
  const ProgramRun run = Run();
  EXPECT_EQ(run.status, 5);
  EXPECT_NE(run.out.find("velkor.toml:5:9: error: the entry of stack rx: \"poll\" can mean more "
                         "than one function: rx.c#poll of rx.c, tx.c#poll of tx.c "
                         "[entry-not-found]"),
            run.out.npos)
      << run.out;
  folder_.Put("velkor.toml", begin + "entry = \"rx.c#poll\"\nsize = 128\n");
  EXPECT_NE(Run().out.find("stack rx needs 200 of 128 bytes: 72 too many [over-budget]"),
            std::string::npos);
}

TEST_F(Check, InitWritesWhatIsThereAndLeavesOpenWhatIsNot) {
  Use("avr");
  fs::remove(folder_.Path("velkor.toml"));
  const ProgramRun init = Program({"init", "build"}).In(folder_.Root()).Run();
  EXPECT_EQ(init.status, 0) << init.err;
  const ProgramRun open = Run();
  EXPECT_EQ(open.status, 2);
  EXPECT_NE(open.err.find("the size of [stack.main] is to be stated"), open.err.npos) << open.err;
  Replace("velkor.toml", "# target = \"cortex-m4f\"", "target = \"avr\" #");
  Replace("velkor.toml", "size = \"?\"", "size = 256");
  Replace("velkor.toml", "# levels = []", "levels = [[\"__vector_11\"]] #");
  EXPECT_EQ(Run().out,
            "main         201 of 256 bytes       55 free                ok\n"
            "1 stack, 0 errors, 0 warnings: passed\n");
  const auto here = [this](const std::vector<std::string>& arguments) {
    return Program(arguments).In(folder_.Root()).Run();
  };
  for (const std::string command : {"analyze", "todo"}) {
    const ProgramRun run = here({command});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, here({command, "velkor.toml"}).out) << command;
  }
  EXPECT_EQ(here({"report", "--output", "page.html"}).status, 0);
  EXPECT_EQ(here({"analyze", ""}).status, 3) << "an empty variable of a script is no default";
  const std::string before = ReadFile(folder_.Path("velkor.toml"));
  EXPECT_EQ(Program({"init", "build"}).In(folder_.Root()).Run().status, 2) << "it is there";
  EXPECT_EQ(ReadFile(folder_.Path("velkor.toml")), before);
  EXPECT_EQ(Program({"init", "none", "--output", "new.toml"}).In(folder_.Root()).Run().status, 3);
  EXPECT_FALSE(fs::exists(folder_.Path("new.toml")));
  fs::remove(folder_.Path("velkor.toml"));
  const ProgramRun none = here({"todo"});
  EXPECT_EQ(none.status, 3);
  EXPECT_TRUE(none.Says("velkor-cli: \"velkor-cli init INPUT\" writes a velkor.toml.")) << none.err;
}

// What docs/gate.md says to do on a build server, as far as it goes without one.
class Recipes : public Check {
 protected:
  // The text in the fences after each of these marks.
  static std::vector<std::string> Marked(const std::string& mark) {
    const std::string page = ReadFile((fs::path(VELKOR_SOURCE_DIR) / "docs/gate.md").string());
    std::vector<std::string> texts;
    for (size_t at = page.find("<!-- " + mark + " -->"); at != page.npos;
         at = page.find("<!-- " + mark + " -->", at + 1)) {
      const size_t start = page.find("```\n", at) + 4;
      texts.push_back(page.substr(start, page.find("```", start) - start));
    }
    return texts;
  }
  // Its exit status, of a shell that finds velkor-cli.
  int Shell(const std::string& script) const {
    folder_.Put("recipe.sh", "set -e\nPATH=" + fs::path(VELKOR_PROGRAM).parent_path().string() +
                                 ":$PATH\n" + script);
    const std::string line = "cd " + folder_.Root() + " && sh recipe.sh >out.txt 2>&1";
    return std::system(line.c_str());  // NOLINT(concurrency-mt-unsafe): one thread
  }
};

TEST_F(Recipes, RunAsTheyStandThere) {
  Use("cortex-m");
  const std::vector<std::string> recipes = Marked("run");
  EXPECT_EQ(recipes.size(), 2U);
  for (const std::string& recipe : recipes) {
    if (recipe.starts_with("velkor-cli") && Shell("jq --version") != 0) {
      continue;
    }
    EXPECT_EQ(Shell(recipe), 0) << recipe << ReadFile(folder_.Path("out.txt"));
  }
  const std::vector<std::string> cmake = Marked("cmake");
  ASSERT_EQ(cmake.size(), 1U);
  folder_.Put("CMakeLists.txt",
              "cmake_minimum_required(VERSION 3.20)\nproject(p NONE)\n" + cmake[0]);
  EXPECT_EQ(Shell("cmake -B out . && cmake --build out"), 0) << ReadFile(folder_.Path("out.txt"));
  Replace("velkor.toml", "size = 384", "size = 300");
  EXPECT_NE(Shell("cmake --build out"), 0) << "the build fails";
  EXPECT_NE(ReadFile(folder_.Path("out.txt")).find("stack rx needs 336 of 300 bytes"),
            std::string::npos);
}

TEST_F(Check, ExplainShowsWhatLiesOnAStackBesides) {
  Use("cortex-m");
  const ProgramRun text = Program({"explain", "velkor.toml", "task_rx"}).In(folder_.Root()).Run();
  EXPECT_TRUE(
      text.out.ends_with("\nStack rx: 336 of 384 bytes\n"
                         "       260  its deepest entry, task_rx\n"
                         "        36  frame\n        40  switch\n"))
      << text.out;
  const ProgramRun run =
      Program({"explain", "velkor.toml", "main", "--format", "json"}).In(folder_.Root()).Run();
  rapidjson::Document json;
  json.Parse(run.out.c_str());
  ASSERT_FALSE(json.HasParseError());
  uint64_t sum = 0;
  for (const auto& row : json["stacks"][0]["rows"].GetArray()) {
    sum += row["bytes"].GetUint64();
  }
  EXPECT_EQ(sum, 292U);
  EXPECT_EQ(json["value"].GetUint64(), 96U) << "of the function itself";
}

}  // namespace
}  // namespace velkor
