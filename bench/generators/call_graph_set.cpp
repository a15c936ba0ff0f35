#include "bench/generators/call_graph_set.h"

#include <set>
#include <string>

#include "bench/generators/random.h"

namespace velkor::bench {
namespace {

constexpr uint32_t kFunctions = 200;  // of a file
constexpr uint32_t kMostCalls = 6;
constexpr uint32_t kLibraryFunctions = 50;

std::string Source(uint32_t file) {
  return "src/part" + std::to_string(file / 50) + "/module_" + std::to_string(file) + ".c";
}

bool IsStatic(uint32_t function) {
  return function % 5 == 4;
}

std::string Title(uint32_t file, uint32_t function) {
  const std::string name =
      "module_" + std::to_string(file) + "_function_" + std::to_string(function);
  return IsStatic(function) ? Source(file) + ":" + name : name;
}

class FileAuthor {
 public:
  FileAuthor(uint32_t file, Random& random) : file_(file), random_(random) {}

  std::string Write() {
    text_ = "graph: { title: \"" + Source(file_) + "\"\n";
    for (uint32_t function = 0; function < kFunctions; ++function) {
      WriteFunction(function);
    }
    return text_ + "}\n";
  }

 private:
  std::string Place(uint32_t line) {
    return Source(file_) + ":" + std::to_string(line) + ":" + std::to_string(1 + random_.Below(60));
  }

  void WriteFunction(uint32_t function) {
    const std::string title = Title(file_, function);
    const std::string name = title.substr(title.rfind(':') + 1);
    const uint32_t line = function * 20 + 1;
    text_ += "node: { title: \"" + title + "\" label: \"" + name + "\\n" + Place(line) + "\\n" +
             std::to_string(8 + 8 * random_.Below(30)) +
             " bytes (static)\\n0 dynamic objects\" }\n";
    const uint32_t calls = random_.Below(kMostCalls + 1);
    for (uint32_t call = 0; call < calls; ++call) {
      const std::string target = Target(function);  // may declare it first
      text_ += "edge: { sourcename: \"" + title + "\" targetname: \"" + target + "\" label: \"" +
               Place(line + 1 + call) + "\" }\n";
    }
  }

  std::string Target(uint32_t function) {
    const uint32_t kind = random_.Below(40);
    if (kind == 0) {
      return "__indirect_call";
    }
    if (kind < 6) {
      return "library_" + std::to_string(random_.Below(kLibraryFunctions));
    }
    if (kind < 20 && file_ > 0) {
      const uint32_t other = random_.Below(file_);
      uint32_t target = random_.Below(kFunctions);
      target -= IsStatic(target) ? 1U : 0U;
      WriteDeclaration(Title(other, target));
      return Title(other, target);
    }
    return function > 0 ? Title(file_, random_.Below(function)) : "library_0";
  }

  void WriteDeclaration(const std::string& title) {
    if (declared_.insert(title).second) {
      text_ += "node: { title: \"" + title + "\" label: \"" + title +
               "\\nsrc/program.h:" + std::to_string(declared_.size()) + ":6\" shape : ellipse }\n";
    }
  }

  const uint32_t file_;
  Random& random_;
  std::string text_;
  std::set<std::string> declared_;
};

}  // namespace

void WriteCallGraphSet(uint64_t bytes, uint64_t seed, ProjectFolder& project) {
  Random random(seed);
  uint64_t written = 0;
  for (uint32_t file = 0; written < bytes; ++file) {
    const std::string text = FileAuthor(file, random).Write();
    project.AddFile("module_" + std::to_string(file) + ".ci", text);
    written += text.size();
  }
}

}  // namespace velkor::bench
