#include <filesystem>
#include <gtest/gtest.h>

#include "program.h"
#include "scratch_folder.h"

namespace velkor {
namespace {

using testing::ModuleFunction;
using testing::ModuleText;
using testing::Program;
using testing::ProgramRun;
using testing::ProjectText;
using testing::ScratchFolder;

class Chains : public ::testing::Test {
 protected:
  void Put(const std::vector<ModuleFunction>& functions) {
    folder_.Put("a.asm", ModuleText("a.c", functions));
    project_ = folder_.Put("app.prj", ProjectText(".", {"a.c"}));
  }

  ProgramRun Report(const std::string& function, const std::string& output,
                    std::vector<std::string> more = {}) {
    std::vector<std::string> arguments = {"chains", project_, function, "--output", output};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return Program(arguments).In(folder_.Root()).Run();
  }
  std::string Written(const std::string& name) { return testing::ReadFile(folder_.Path(name)); }

  ScratchFolder folder_;
  std::string project_;
};

TEST_F(Chains, TheExtensionChoosesTheFormat) {
  Put({{"main", "4", {"f", "g", "h"}}, {"f", "6", {}, true}, {"g", "6", {}}, {"h", "2", {}}});
  const ProgramRun run = Report("main", "max.txt");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_TRUE(run.Says(folder_.Path("max.txt") + " Writing completed.")) << run.err;
  EXPECT_EQ(Written("max.txt"), "main(10,4)+--a.c#f(6,6)\r\n          +--g(6,6)\r\n");
  EXPECT_EQ(Report("f", "one.txt", {"--all"}).status, 0);
  EXPECT_EQ(Written("one.txt"), "a.c#f(6,6)\r\n");
}

TEST_F(Chains, NoInputIsOverwrittenAndNothingIsWrittenForAWrongName) {
  Put({{"main", "4", {}}});
  const std::string module = Written("a.asm");
  for (const std::string& output :
       std::vector<std::string>{"app.prj", "./a.asm", folder_.Root(), "none/x.txt", "/dev/full",
                                std::string(260, 'x')}) {
    EXPECT_EQ(Report("main", output).status, 4) << output;
  }
  EXPECT_EQ(Written("a.asm"), module);
  EXPECT_EQ(Report("mainn", "none.txt").status, 2);
  EXPECT_FALSE(std::filesystem::exists(folder_.Path("none.txt")));
}

}  // namespace
}  // namespace velkor
