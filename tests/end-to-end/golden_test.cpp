#include <cstdlib>
#include <gtest/gtest.h>
#include <regex>

#include "program.h"
#include "scratch_folder.h"

namespace velkor {
namespace {

using testing::Program;
using testing::ProgramRun;
using testing::ScratchFolder;

const std::string kSource = VELKOR_SOURCE_DIR;
const std::string kFirmware = kSource + "/examples/firmware/app.prj";

// Golden files do not know where this checkout and its build are.
std::string WithoutPlaces(std::string text) {
  const auto replace = [&text](const std::string& place, const std::string& name) {
    for (size_t at = text.find(place); at != std::string::npos; at = text.find(place, at)) {
      text.replace(at, place.size(), name);
    }
  };
  replace(VELKOR_BUILD_DIR, "{build}");
  replace(kSource, "{source}");
  return text;
}

void ExpectGolden(const std::string& name, const std::string& output) {
  const std::string path = kSource + "/tests/end-to-end/golden/" + name;
  const std::string text = WithoutPlaces(output);
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
  ExpectGolden("firmware.json", Program({"analyze", kFirmware, "--format", "json"}).Run().out);
  ExpectGolden("firmware.csv", Program({"analyze", "--format=csv", kFirmware}).Run().out);
}

TEST(Golden, ASpecificationFileSettlesWhatIsUncertain) {
  const std::string limits = kSource + "/examples/firmware/limits.txt";
  const ProgramRun run = Program({"analyze", kFirmware, "--load", limits}).Run();
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out.find("≥"), run.out.rfind("≥")) << "only in the legend";
  ExpectGolden("firmware-limits.txt", run.out);
}

TEST(Golden, ARealProgramGivesTheSameBytesOnEveryRun) {
  const std::string lua = kSource + "/examples/lua/app.prj";
  for (const std::string format : {"text", "json", "csv"}) {
    const ProgramRun first = Program({"analyze", lua, "--format", format}).Run();
    const ProgramRun second =
        Program({"analyze", lua, "--format", format}).With("HOME", "/elsewhere").In("/").Run();
    EXPECT_EQ(first.status, 0) << first.err;
    EXPECT_GT(first.out.size(), 10000U);
    EXPECT_EQ(first.out, second.out) << format;
    EXPECT_EQ(first.err, second.err) << format;
  }
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

TEST(Documents, TheReadmeShowsRealOutput) {
  const std::string readme = testing::ReadFile(kSource + "/README.md");
  ProgramRun run = Program({"analyze", kSource + "/examples/firmware/app.prj"}).Run();
  const std::string first = run.out.substr(run.out.find("Compiler"));
  EXPECT_NE(readme.find(first.substr(0, first.find("Unknown functions"))), std::string::npos)
      << first;
}

}  // namespace
}  // namespace velkor
