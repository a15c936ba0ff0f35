#include "scratch_folder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <stdexcept>

namespace velkor::testing {

namespace fs = std::filesystem;

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return bytes.str();
}

void WriteFile(const std::string& path, std::string_view bytes) {
  std::ofstream file(path, std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!file.flush()) {
    throw std::runtime_error("cannot write " + path);
  }
}

ScratchFolder::ScratchFolder() {
  std::string pattern = (fs::temp_directory_path() / "velkor-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) {
    throw std::runtime_error("cannot make " + pattern);
  }
  root_ = fs::canonical(pattern).string();
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;
  fs::remove_all(root_, ignored);
}

std::string ScratchFolder::Put(std::string_view name, std::string_view bytes) const {
  const std::string path = Path(name);
  fs::create_directories(fs::path(path).parent_path());
  WriteFile(path, bytes);
  return path;
}

std::string ModuleText(const std::string& source, const std::vector<ModuleFunction>& functions) {
  std::set<std::string> own;
  std::set<std::string> called;
  std::string text = "; Ta/rn Series C Compiler V3.70 Assembler Source\n";
  for (const ModuleFunction& function : functions) {
    own.insert(function.name);
    called.insert(function.calls.begin(), function.calls.end());
    text += std::string("$DGS ") + (function.isStatic ? "STA_SYM" : "GLV_SYM") + ", _" +
            function.name + ", U, U, 00H, 026H, 01H, 02H\n";
  }
  for (const std::string& name : called) {
    if (!name.empty() && !own.contains(name)) {
      text += "$DGS GLV_SYM, _" + name + ", U, U, 00H, 026H, 01H, 02H\n";
    }
  }
  text += "@@DATA\tDSEG\n; *** Code Information ***\n; $FILE " + source + "\n;\n";
  for (const ModuleFunction& function : functions) {
    text += "; $FUNC " + function.name + "(1)\n;\tCODE SIZE= 9 bytes, CLOCK_SIZE= 9 clocks, " +
            "STACK_SIZE= " + function.frame + " bytes\n";
    for (const std::string& name : function.calls) {
      text += "; $CALL " + name + "()\n";
    }
  }
  return text;
}

std::string ProjectText(const std::string& directory, const std::vector<std::string>& sources,
                        std::string_view options) {
  std::string text = "[ProjectManager]\nPath=" + directory + "\n[SrcFile]\n";
  for (size_t i = 0; i < sources.size(); ++i) {
    text += "Source" + std::to_string(i + 1) + "=" + sources[i] + "\n";
  }
  return text + "[Options.CCTarn 0]\n" + std::string(options);
}

std::string PutLongProject(const ScratchFolder& folder) {
  std::string text = ModuleText("main.c", {{"main", "4", {}}});
  for (int line = 0; line < 65000; ++line) {
    text += "; a line of the code information block that says nothing\n";
  }
  const std::string module = folder.Put("m0.asm", text);
  std::vector<std::string> sources = {"m0.c"};
  for (int i = 1; i < 2000; ++i) {
    fs::create_symlink(module, folder.Path("m" + std::to_string(i) + ".asm"));
    sources.push_back("m" + std::to_string(i) + ".c");
  }
  return folder.Put("long.prj", ProjectText(".", sources));
}

}  // namespace velkor::testing
