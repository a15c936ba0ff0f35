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
