#include "large_project.h"

#include <filesystem>
#include <fstream>

namespace velkor {

namespace {

// The number scattered, so that the order of the names is not that of the functions.
std::string NameOf(size_t function) {
  return "driver_" + std::to_string(function * 7919 % 1000003) + "_step" + std::to_string(function);
}

class ModuleWriter {
 public:
  ModuleWriter(const std::string& path, const std::string& source) : out_(path) {
    out_ << "; Ta/rn Series C Compiler V3.70 Assembler Source\n\n";
    block_ = "@@CODE\tCSEG\n\tEND\n\n; *** Code Information ***\n;\n; $FILE " + source + "\n;\n";
  }
  ~ModuleWriter() { out_ << '\n' << block_; }
  ModuleWriter(const ModuleWriter&) = delete;
  ModuleWriter& operator=(const ModuleWriter&) = delete;

  void Begin(const std::string& name, size_t frameSize) {
    out_ << "$DGS GLV_SYM, _" << name << ", U, U, 00H, 026H, 01H, 02H\n";
    block_ += "; $FUNC " + name + "(1)\n;\tCODE SIZE= 3 bytes, CLOCK_SIZE= 3 clocks, STACK_SIZE= " +
              std::to_string(frameSize) + " bytes\n";
  }
  void Call(const std::string& name) { block_ += "; $CALL " + name + "()\n"; }
  void End() { block_ += ";\n"; }

 private:
  std::ofstream out_;
  std::string block_;
};

void WriteFunction(ModuleWriter& module, size_t function, const LargeProject& project) {
  module.Begin(NameOf(function), function * 31 % 97);
  if (function == 0) {
    for (size_t i = 1; i <= project.wideCallees; ++i) {
      module.Call(NameOf(i * (project.functions / (project.wideCallees + 1))));
    }
  }
  const size_t place = function % project.treeSize;
  for (const size_t child : {2 * place + 1, 2 * place + 2}) {
    const size_t callee = function - place + child;
    if (child < project.treeSize && callee < project.functions) {
      module.Call(NameOf(callee));
    }
  }
  module.End();
}

}  // namespace

std::string WriteLargeProject(const std::string& folder, const LargeProject& project) {
  const std::string path = folder + "/app.prj";
  if (std::filesystem::exists(path)) {
    return path;
  }
  std::filesystem::create_directories(folder);
  std::string sources;
  size_t next = 0;
  for (size_t i = 0; i < project.modules; ++i) {
    const std::string name = "m" + std::to_string(i);
    sources += "Source" + std::to_string(i + 1) + "=" + name + ".c\n";
    ModuleWriter module(folder + "/" + name + ".asm", "C:\\p\\" + name + ".c");
    for (const size_t end = project.functions * (i + 1) / project.modules; next < end; ++next) {
      WriteFunction(module, next, project);
    }
  }
  std::ofstream(path) << "[ProjectManager]\nPath=C:\\p\n[SrcFile]\n" << sources;
  return path;
}

}  // namespace velkor
