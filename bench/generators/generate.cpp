#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "bench/generators/call_graph_set.h"
#include "bench/generators/graph_kinds.h"
#include "bench/generators/graph_project.h"
#include "bench/generators/module_set.h"
#include "bench/generators/program_image.h"
#include "bench/generators/project_folder.h"
#include "bench/generators/specification_text.h"

namespace velkor::bench {
namespace {

struct Order {
  std::string kind;
  uint64_t size = 0;
  uint64_t seed = 1;
  std::string folder;
};

const GraphKind* FindGraphKind(std::string_view name) {
  const auto kinds = GraphKinds();
  const auto found = std::find_if(kinds.begin(), kinds.end(),
                                  [name](const GraphKind& kind) { return kind.name == name; });
  return found == kinds.end() ? nullptr : &*found;
}

void WriteGraph(std::string_view kind, const Order& order, ProjectFolder& project) {
  const auto size = static_cast<uint32_t>(order.size);
  WriteGraphModules(FindGraphKind(kind)->make(size, order.seed), project);
}

void Generate(const Order& order) {
  ProjectFolder project(order.folder);
  if (order.kind == "modules") {
    WriteModuleSet(order.size, order.seed, project);
  } else if (order.kind == "callgraphs") {
    WriteCallGraphSet(order.size, order.seed, project);
  } else if (order.kind == "program") {
    WriteProgram(order.size, order.seed, project);
  } else if (order.kind == "specification") {
    WriteGraph("chain-of-rings", order, project);
    project.AddFile("limits.txt", SpecificationText(static_cast<uint32_t>(order.size), order.seed));
  } else {
    WriteGraph(order.kind, order, project);
  }
  // Last, so that where there is a project file the project is whole.
  project.WriteProjectFile();
}

std::string KindsHelp(std::vector<std::string>& names) {
  std::string help =
      "What to write, and what its size counts:\n"
      "  modules: bytes of modules that look real\n"
      "  callgraphs: bytes of call graph files that look real\n"
      "  program: bytes of code of a linked program\n"
      "  specification: lines of limits.txt, for a chain of rings\n";
  names = {"modules", "callgraphs", "program", "specification"};
  for (const GraphKind& kind : GraphKinds()) {
    help += "  " + std::string(kind.name) + ": " + std::string(kind.size) + "\n";
    names.emplace_back(kind.name);
  }
  return help;
}

int Run(int argc, char** argv) {
  CLI::App application("Writes a project for the benchmarks: the same for the same seed.");
  Order order;
  std::vector<std::string> kinds;
  const std::string help = KindsHelp(kinds);
  application.add_option("KIND", order.kind, help)->required()->check(CLI::IsMember(kinds));
  application.add_option("--size", order.size)->required()->check(CLI::Range(1ULL, 2000000000ULL));
  application.add_option("--seed", order.seed);
  application.add_option("FOLDER", order.folder)->required();
  CLI11_PARSE(application, argc, argv);
  Generate(order);
  return 0;
}

}  // namespace
}  // namespace velkor::bench

int main(int argc, char** argv) {
  try {
    return velkor::bench::Run(argc, argv);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "generate: %s\n", failure.what());
    return 1;
  }
}
