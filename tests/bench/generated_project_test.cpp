#include <algorithm>
#include <gtest/gtest.h>
#include <rapidjson/document.h>
#include <set>
#include <string>
#include <vector>

#include "bench/generators/graph_kinds.h"
#include "bench/generators/graph_project.h"
#include "bench/generators/module_set.h"
#include "bench/generators/project_folder.h"
#include "bench/generators/specification_text.h"
#include "end-to-end/program.h"
#include "end-to-end/scratch_folder.h"

namespace velkor::bench {
namespace {

using testing::Program;
using testing::ProgramRun;
using testing::ScratchFolder;

// Everything is read, and nothing is worth a warning.
ProgramRun Analyse(const ScratchFolder& folder, std::vector<std::string> more = {}) {
  std::vector<std::string> arguments = {"analyze", folder.Path("app.prj")};
  arguments.insert(arguments.end(), more.begin(), more.end());
  ProgramRun run = Program(arguments).Run();
  EXPECT_EQ(run.status, 0) << run.err;
  return run;
}

bool Holds(const ProgramRun& run, const std::string& text) {
  return run.out.find(text) != std::string::npos;
}

// How JSON states that none is unknown of so many functions, and so many are adjusted.
std::string Counts(size_t functions, size_t adjusted) {
  return "\"functions\": " + std::to_string(functions) +
         ",\n  \"unknown\": 0,\n  \"adjusted\": " + std::to_string(adjusted) + "\n";
}

TEST(GeneratedProject, HasTheCallsOfItsGraph) {
  for (const GraphKind& kind : GraphKinds()) {
    SCOPED_TRACE(kind.name);
    const ScratchFolder folder;
    const CallGraph graph = kind.make(40, 1);
    ProjectFolder project(folder.Root());
    WriteGraphModules(graph, project);
    project.WriteProjectFile();
    const ProgramRun run = Analyse(folder, {"--format", "json"});
    EXPECT_TRUE(Holds(run, Counts(graph.FunctionCount(), 0)));
    EXPECT_FALSE(Holds(run, "\"indirectCall\": true"));
    rapidjson::Document json;
    ASSERT_FALSE(json.Parse(run.out.c_str()).HasParseError());
    for (uint32_t function = 0; function < graph.FunctionCount(); ++function) {
      const auto& record = json["functions"][function];
      EXPECT_EQ(record["specName"].GetString(), GraphFunctionName(function));
      std::set<uint32_t> callees;
      for (const auto& callee : record["callees"].GetArray()) {
        callees.insert(callee.GetUint());
      }
      const auto expected = graph.Callees(function);
      EXPECT_EQ(callees, std::set<uint32_t>(expected.begin(), expected.end()));
    }
  }
}

TEST(GeneratedProject, IsDividedIntoModulesThatAreRead) {
  const ScratchFolder folder;
  ProjectFolder project(folder.Root());
  constexpr uint32_t kFunctions = 30000;
  for (const GraphKind& kind : GraphKinds()) {
    if (kind.name == "called-by-all") {
      WriteGraphModules(kind.make(kFunctions, 1), project);
    }
  }
  project.WriteProjectFile();
  EXPECT_GT(project.ModuleCount(), 2U);
  const ProgramRun run = Analyse(folder);
  EXPECT_TRUE(Holds(run, "Functions  30001, 30000 of them top-level\n")) << run.out.substr(0, 300);
}

TEST(GeneratedProject, AModuleSetLooksLikeAProgram) {
  const ScratchFolder folder;
  ProjectFolder project(folder.Root());
  WriteModuleSet(3000000, 1, project);
  project.WriteProjectFile();
  EXPECT_EQ(project.ModuleCount(), 2U);
  const ProgramRun run = Analyse(folder);
  EXPECT_TRUE(Holds(run, "Unknown functions: none\nRecursive functions: none\n"));
  EXPECT_FALSE(Holds(run, "Functions with indirect calls: none\n"));
  EXPECT_TRUE(Holds(run, "Library functions: 5\n"));

  const std::string text = testing::ReadFile(folder.Path("module1.asm"));
  const auto lines = static_cast<size_t>(std::count(text.begin(), text.end(), '\n'));
  EXPECT_LE(lines, ModuleText::kMaxLines);
  EXPECT_GT(lines, ModuleText::kMaxLines - 1000);
  EXPECT_GT(text.size() / lines, 20U);
  EXPECT_LT(text.size() / lines, 40U);
}

TEST(GeneratedProject, EveryLineOfTheSpecificationAdjusts) {
  const ScratchFolder folder;
  ProjectFolder project(folder.Root());
  const auto kinds = GraphKinds();
  const auto rings = std::find_if(kinds.begin(), kinds.end(), [](const GraphKind& kind) {
    return kind.name == "chain-of-rings";
  });
  WriteGraphModules(rings->make(200, 1), project);
  project.WriteProjectFile();
  project.AddFile("limits.txt", SpecificationText(200, 1));
  const ProgramRun run = Analyse(folder, {"--load", folder.Path("limits.txt"), "--format", "json"});
  EXPECT_TRUE(Holds(run, Counts(200, 200))) << run.out.substr(0, 1000);
}

TEST(GeneratedProject, IsTheSameForTheSameSeed) {
  const auto firstModule = [](uint64_t seed) {
    const ScratchFolder folder;
    ProjectFolder project(folder.Root());
    WriteModuleSet(1, seed, project);
    return testing::ReadFile(folder.Path("module1.asm"));
  };
  EXPECT_EQ(firstModule(7), firstModule(7));
  EXPECT_NE(firstModule(7), firstModule(8));
  EXPECT_NE(SpecificationText(100, 7), SpecificationText(100, 8));
}

}  // namespace
}  // namespace velkor::bench
