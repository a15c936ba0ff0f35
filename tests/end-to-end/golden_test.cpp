#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <regex>
#include <set>

#include "program.h"
#include "scratch_folder.h"

namespace velkor {
namespace {

using testing::ModuleText;
using testing::Program;
using testing::ProgramRun;
using testing::ProjectText;
using testing::ScratchFolder;

const std::string kSource = VELKOR_SOURCE_DIR;
const std::string kFirmware = kSource + "/examples/firmware/app.prj";

// Golden files do not know where this checkout, its build and a test's folder are.
std::string WithoutPlaces(std::string text, const std::string& folder) {
  const auto replace = [&text](const std::string& place, const std::string& name) {
    for (size_t at = text.find(place); at != std::string::npos; at = text.find(place, at)) {
      text.replace(at, place.size(), name);
    }
  };
  replace(folder, "{folder}");
  replace(VELKOR_BUILD_DIR, "{build}");
  replace(kSource, "{source}");
  return text;
}

void ExpectGolden(const std::string& name, const std::string& output,
                  const std::string& folder = "{folder}") {
  const std::string path = kSource + "/tests/end-to-end/golden/" + name;
  const std::string text = WithoutPlaces(output, folder);
  if (std::getenv("VELKOR_UPDATE_GOLDEN") != nullptr) {
    testing::WriteFile(path, text);
  }
  EXPECT_EQ(text, testing::ReadFile(path)) << "VELKOR_UPDATE_GOLDEN=1 writes " << path;
}

TEST(Golden, FirmwareInEveryFormat) {
  const ProgramRun text = Program({"analyze", kFirmware}).Run();
  EXPECT_EQ(text.status, 0) << text.err;
  ExpectGolden("firmware.txt", text.out);
  ExpectGolden("firmware.log", text.err);
  ExpectGolden("firmware-chains.txt", Program({"analyze", kFirmware, "--chains"}).Run().out);
  ExpectGolden("firmware.json", Program({"analyze", kFirmware, "--format", "json"}).Run().out);
  ExpectGolden("firmware.csv", Program({"analyze", "--format=csv", kFirmware}).Run().out);
}

TEST(Golden, ASpecificationFileSettlesWhatIsUncertain) {
  const std::string limits = kSource + "/examples/firmware/limits.txt";
  const ProgramRun run = Program({"analyze", kFirmware, "--load", limits}).Run();
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out.find("≥"), run.out.rfind("≥")) << "only in the legend";
  EXPECT_EQ(run.out.find("What to state"), std::string::npos) << run.out;
  ExpectGolden("firmware-limits.txt",
               Program({"analyze", kFirmware, "--load", limits, "--chains"}).Run().out);
}

// A ring of two functions that is entered at both: each round of the one may hold two of the other.
TEST(Golden, ARingOfTwoEntriesAndAMissingModule) {
  const ScratchFolder folder;
  folder.Put("ring.asm", ModuleText("ring.c", {{"main", "10", {"a"}},
                                               {"isr", "5", {"b"}},
                                               {"a", "100", {"b"}},
                                               {"b", "20", {"a"}}}));
  folder.Put("app.psg", "a, RECTIME=2\nb, RECTIME=2\n");
  const std::string project = folder.Put("app.prj", ProjectText(".", {"ring.c", "gone.c"}));
  const struct {
    std::string golden;  // of what it prints
    std::vector<std::string> arguments;
  } commands[] = {{"ring.txt", {"analyze"}},
                  {"ring-chains.txt", {"analyze", "--chains"}},
                  {"ring.csv", {"analyze", "--format", "csv"}},
                  {"ring.json", {"analyze", "--format", "json"}},
                  {"ring-isr.txt", {"explain", "isr"}},
                  {"ring-main.json", {"explain", "main", "--format", "json"}},
                  {"", {"chains", "main", "--output", folder.Path("chains.txt")}},
                  {"", {"save", "--output", folder.Path("saved.txt")}},
                  {"", {"load", folder.Put("none.txt", "")}},
                  {"", {"reset", "main"}},
                  {"", {"adjust", "isr", "--no-callees"}}};
  for (auto [golden, arguments] : commands) {
    arguments.insert(arguments.begin() + 1, project);
    const ProgramRun run = Program(arguments).Run();
    EXPECT_EQ(run.status, 1) << "for the missing module alone";
    EXPECT_NE(run.err.find("\nnote: 2 functions of one recursion state a depth of 2 or more"),
              std::string::npos)
        << run.err;
    if (!golden.empty()) {
      ExpectGolden(golden, run.out, folder.Root());
      ExpectGolden("ring.log", run.err, folder.Root());
    }
  }
}

TEST(Golden, WhatIsNotKnown) {
  const ScratchFolder folder;
  folder.Put("a.asm", ModuleText("a.c", {{"main", "4", {"step", "x"}},
                                         {"step", "6", {"deep"}},
                                         {"deep", "20", {"step"}},
                                         {"isr", "8", {}}}));
  folder.Put("app.psg", "isr, CALL=step\n");
  const std::string project = folder.Put("app.prj", ProjectText(".", {"a.c"}));
  ExpectGolden("not-known.txt", Program({"analyze", project, "--chains"}).Run().out, folder.Root());
  // What a function misses that is not among the largest.
  ExpectGolden("not-known-isr.txt", Program({"analyze", project, "--function", "isr"}).Run().out,
               folder.Root());

  std::vector<testing::ModuleFunction> chain;
  for (int i = 0; i < 50; ++i) {
    chain.push_back({"f" + std::to_string(i), "2", {"f" + std::to_string(i + 1)}});
  }
  folder.Put("a.asm", ModuleText("a.c", chain));
  EXPECT_NE(Program({"analyze", project, "--chains"}).Run().out.find("left out"),
            std::string::npos);
  EXPECT_EQ(Program({"analyze", project, "--full"}).Run().out.find("left out"), std::string::npos);
}

TEST(Golden, ARealProgramGivesTheSameBytesOnEveryRun) {
  const std::string lua = kSource + "/examples/lua/app.prj";
  for (const std::string choice : {"--chains", "--top=3", "--format=json", "--format=csv"}) {
    const ProgramRun first = Program({"analyze", lua, choice}).Run();
    const ProgramRun second =
        Program({"analyze", lua, choice}).With("HOME", "/elsewhere").In("/").Run();
    EXPECT_EQ(first.status, 0) << first.err;
    EXPECT_EQ(first.out.size() > 10000U, choice != "--top=3");
    EXPECT_EQ(first.out, second.out) << choice;
    EXPECT_EQ(first.err, second.err) << choice;
  }
  EXPECT_LE(std::ranges::count(Program({"analyze", lua}).Run().out, '\n'), 45) << "one screen";
}

std::string BlockAfter(const std::string& text, size_t position) {
  const std::string fence = "```\n";
  const size_t start = text.find(fence, position) + fence.size();
  return text.substr(start, text.find(fence, start) - start);
}

void PutExamples(const std::string& page, const ScratchFolder& folder) {
  const std::regex example("<!-- example: (.*) -->");
  int files = 0;
  for (std::sregex_iterator match(page.begin(), page.end(), example), end; match != end; ++match) {
    folder.Put((*match)[1].str(), BlockAfter(page, static_cast<size_t>(match->position())));
    ++files;
  }
  ASSERT_EQ(files, 3);
}

// The files that the page shows are put down as they stand, and the program must print what the
// page says it prints.
TEST(Documents, TheExamplesOfTheFormatsWork) {
  const std::string page = testing::ReadFile(kSource + "/docs/file-formats.md");
  const ScratchFolder folder;
  PutExamples(page, folder);
  const ProgramRun run = Program({"analyze", "app.prj", "--load", "limits.txt", "--format", "csv"})
                             .In(folder.Root())
                             .Run();
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, BlockAfter(page, page.find("<!-- output -->")));
  for (const std::string name : {"chains.txt", "chains.csv"}) {
    const ProgramRun chains =
        Program({"chains", "app.prj", "main", "--all", "--output", name}).In(folder.Root()).Run();
    EXPECT_EQ(chains.status, 0) << chains.err;
    std::string report = testing::ReadFile(folder.Path(name));
    std::erase(report, '\r');
    EXPECT_EQ(report, BlockAfter(page, page.find("<!-- chains: " + name)));
  }
}

// Every key of the schemas stands in a table of the page, in the same order.
TEST(Documents, TheKeysOfTheJsonAreDescribed) {
  const std::string page = testing::ReadFile(kSource + "/docs/json.md");
  for (const std::string command : {"analyze", "explain", "check", "diff"}) {
    const std::string schema =
        testing::ReadFile(kSource + "/src/resources/schema/" + command + ".schema.json");
    const std::regex key("\"([A-Za-z]+)\": \\{\\s*\"(type|enum)\"");
    const size_t part = page.find("\n## " + command);
    for (std::sregex_iterator match(schema.begin(), schema.end(), key), end; match != end;
         ++match) {
      const std::string name = (*match)[1];
      EXPECT_TRUE(name == "items" || page.find("| `" + name + "` |", part) != std::string::npos)
          << command << " " << name;
    }
  }
}

TEST(Documents, TheTableOfNotesIsWhole) {
  const std::string page = testing::ReadFile(kSource + "/docs/how-it-works.md");
  const std::regex rule(
      R"re((?:rule = |Note\()\s*(?:[a-z][^"]*\? )?"([a-z-]+)"(?:\s*: "([a-z-]+)")?)re");
  std::set<std::string> rules;
  for (const char* room : {"core", "files", "readers", "document", "cli"}) {
    for (const auto& entry :
         std::filesystem::recursive_directory_iterator(kSource + "/src/" + room)) {
      const std::string code =
          entry.path().extension() == ".cpp" ? testing::ReadFile(entry.path().string()) : "";
      for (std::sregex_iterator match(code.begin(), code.end(), rule), end; match != end; ++match) {
        rules.insert((*match)[1]);
        rules.insert((*match)[2]);
      }
    }
  }
  rules.erase("");
  rules.erase("statement-not-read");  // of the gate alone
  EXPECT_TRUE(rules.contains("assembler") && rules.contains("old-link"));
  for (const std::string& each : rules) {
    EXPECT_NE(page.find("\n| " + each + " | "), std::string::npos) << each;
  }
}

TEST(Documents, TheReadmeShowsRealOutput) {
  const std::string readme = testing::ReadFile(kSource + "/README.md");
  const ProgramRun run = Program({"analyze", kSource + "/examples/firmware/app.prj"}).Run();
  const std::string shown = run.out.substr(run.out.find("Compiler"));
  EXPECT_NE(readme.find(shown), std::string::npos) << shown;
  const std::string steps = Program({"todo", kSource + "/examples/firmware/app.prj"}).Run().out;
  const std::string block = "```\n" + steps.substr(steps.find("# 1: ")) + "```\n";
  EXPECT_NE(readme.find(block), std::string::npos) << block;
}

}  // namespace
}  // namespace velkor
