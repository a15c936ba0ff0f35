#include "bench/generators/graph_project.h"

#include <stdexcept>
#include <utility>
#include <vector>

namespace velkor::bench {
namespace {

class GraphModules {
 public:
  GraphModules(const CallGraph& graph, ProjectFolder& project)
      : graph_(graph),
        project_(project),
        module_(project.NewModule()),
        declaredIn_(graph.FunctionCount(), 0) {}

  void Write() {
    for (uint32_t function = 0; function < graph_.FunctionCount(); ++function) {
      MakeRoomFor(function);
      WriteFunction(function);
    }
    project_.AddModule(module_);
  }

 private:
  void MakeRoomFor(uint32_t function) {
    constexpr size_t kLinesBesidesCalls = 5;
    const size_t lines = kLinesBesidesCalls + 2 * graph_.Callees(function).size();
    if (module_.LineCount() + lines > ModuleText::kMaxLines) {
      project_.AddModule(module_);
      module_ = project_.NewModule();
    }
    if (module_.LineCount() + lines > ModuleText::kMaxLines) {
      throw std::runtime_error("a function has more calls than a module has room for");
    }
  }

  void WriteFunction(uint32_t function) {
    const std::string name = GraphFunctionName(function);
    Declare(function, name);
    module_.AddLabel(name);
    module_.AddCode("\tret");
    module_.DescribeFunction(name, 2 + function % 15 * 2);
    for (const uint32_t callee : graph_.Callees(function)) {
      const std::string calleeName = GraphFunctionName(callee);
      Declare(callee, calleeName);
      module_.DescribeCall(calleeName);
    }
  }

  void Declare(uint32_t function, const std::string& name) {
    const uint32_t module = project_.ModuleCount() + 1;
    if (std::exchange(declaredIn_[function], module) != module) {
      module_.DeclareFunction(name, ModuleText::Linkage::kGlobal);
    }
  }

  const CallGraph& graph_;
  ProjectFolder& project_;
  ModuleText module_;
  std::vector<uint32_t> declaredIn_;  // the last module that declares each function
};

}  // namespace

std::string GraphFunctionName(uint32_t function) {
  return "f" + std::to_string(function);
}

void WriteGraphModules(const CallGraph& graph, ProjectFolder& project) {
  GraphModules(graph, project).Write();
}

}  // namespace velkor::bench
