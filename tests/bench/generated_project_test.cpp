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
using testing::ScratchFolder;
using Numbers = std::set<uint32_t>;

// Everything is read, and nothing is worth a warning.
std::string Analyse(const ScratchFolder& folder, const std::vector<std::string>& more = {}) {
  const testing::ProgramRun run = Program({"analyze", folder.Path("app.prj")}, more).Run();
  EXPECT_EQ(run.status, 0) << run.err;
  return run.out;
}

Numbers CalleesOf(const CallGraph& graph, uint32_t function) {
  return {graph.Callees(function).begin(), graph.Callees(function).end()};
}

// Each function has the calls of its graph and, where all are recursive, every line of the
// specification adjusts.
void ExpectProjectOf(const CallGraph& graph, bool adjusted) {
  const ScratchFolder folder;
  ProjectFolder project(folder.Root());
  WriteGraphModules(graph, project);
  project.WriteProjectFile();
  project.AddFile("limits.txt", adjusted ? SpecificationText(graph.FunctionCount(), 1) : "");
  rapidjson::Document json;
  json.Parse(Analyse(folder, {"--load", folder.Path("limits.txt"), "--format", "json"}).c_str());
  ASSERT_FALSE(json.HasParseError());
  EXPECT_EQ(json["counts"]["functions"].GetUint(), graph.FunctionCount());
  EXPECT_EQ(json["counts"]["unknown"].GetUint(), 0U);
  EXPECT_EQ(json["counts"]["adjusted"].GetUint(), adjusted ? graph.FunctionCount() : 0);
  for (uint32_t function = 0; function < graph.FunctionCount(); ++function) {
    const auto& record = json["functions"][function];
    EXPECT_EQ(record["specName"].GetString(), GraphFunctionName(function));
    Numbers callees;
    for (const auto& callee : record["callees"].GetArray()) {
      callees.insert(callee.GetUint());
    }
    EXPECT_EQ(callees, CalleesOf(graph, function));
  }
}

TEST(GeneratedProject, HasTheShapeThatItsKindStates) {
  const struct {
    std::string_view kind;
    uint32_t size;
    uint32_t functions;
    uint64_t calls;
    uint32_t lowest;  // of the callees of function 19
    uint32_t highest;
  } shapes[] = {{"random", 40, 40, 160, 0, 39},
                {"layered", 400, 400, 1520, 20, 39},
                {"ring", 40, 40, 40, 20, 20},
                {"chain-of-rings", 200, 200, 219, 10, 20},
                {"complete", 40, 40, 40 * 39, 0, 39},
                {"ladder", 40, 81, 158, 21, 22},
                {"called-by-all", 10000, 10001, 10000, 0, 0},
                {"calling-all", 40, 41, 40, 0, 0}};
  ASSERT_EQ(GraphKinds().size(), std::size(shapes));
  for (size_t i = 0; i < std::size(shapes); ++i) {
    SCOPED_TRACE(shapes[i].kind);
    EXPECT_EQ(GraphKinds()[i].name, shapes[i].kind);
    const CallGraph graph = GraphKinds()[i].make(shapes[i].size, 1);
    EXPECT_EQ(graph.FunctionCount(), shapes[i].functions);
    EXPECT_EQ(graph.CallCount(), shapes[i].calls);
    for (const uint32_t callee : graph.Callees(19)) {
      EXPECT_TRUE(shapes[i].lowest <= callee && callee <= shapes[i].highest) << callee;
    }
    ExpectProjectOf(graph, shapes[i].kind == "chain-of-rings");
  }
}

TEST(GeneratedProject, AModuleSetLooksLikeAProgramAndIsTheSameForTheSameSeed) {
  const auto firstModule = [](uint64_t seed) {
    const ScratchFolder folder;
    ProjectFolder project(folder.Root());
    WriteModuleSet(3000000, seed, project);
    project.WriteProjectFile();
    EXPECT_EQ(project.ModuleCount(), 2U);
    const std::string out = Analyse(folder, {"--chains"});
    for (const char* text : {"Unknown functions: none\nRecursive functions: none\n",
                             "Functions with indirect calls: ", "Library functions: 5\n"}) {
      EXPECT_NE(out.find(text), std::string::npos) << text;
    }
    EXPECT_EQ(out.find("indirect calls: none"), std::string::npos);
    return testing::ReadFile(folder.Path("module1.asm"));
  };
  const std::string text = firstModule(7);
  const auto lines = static_cast<size_t>(std::count(text.begin(), text.end(), '\n'));
  EXPECT_LE(lines, ModuleText::kMaxLines);
  EXPECT_GT(lines, ModuleText::kMaxLines - 1000);
  EXPECT_GT(text.size() / lines, 20U);
  EXPECT_LT(text.size() / lines, 40U);
  EXPECT_TRUE(text == firstModule(7) && text != firstModule(8));
  EXPECT_NE(SpecificationText(100, 7), SpecificationText(100, 8));
}

}  // namespace
}  // namespace velkor::bench
