#include "bench/generators/project_folder.h"

#include <fstream>
#include <stdexcept>
#include <utility>

namespace velkor::bench {
namespace {

constexpr uint32_t kMaxModules = 2048;  // a project file lists no more sources

std::string ModuleName(uint32_t number) {
  return "module" + std::to_string(number);
}

}  // namespace

ProjectFolder::ProjectFolder(std::filesystem::path folder) : folder_(std::move(folder)) {
  std::filesystem::create_directories(folder_);
}

ModuleText ProjectFolder::NewModule() const {
  return ModuleText("C:\\bench\\" + ModuleName(moduleCount_ + 1) + ".c");
}

void ProjectFolder::AddModule(const ModuleText& module) {
  if (moduleCount_ == kMaxModules) {
    throw std::runtime_error("more modules than a project file lists");
  }
  ++moduleCount_;
  moduleBytes_ += module.Size();
  AddFile(ModuleName(moduleCount_) + ".asm", module.Text());
}

void ProjectFolder::AddFile(std::string_view name, std::string_view text) const {
  const std::filesystem::path path = folder_ / name;
  std::ofstream file(path, std::ios::binary);
  file.write(text.data(), static_cast<std::streamsize>(text.size()));
  file.close();
  if (!file) {
    throw std::runtime_error("cannot write " + path.string());
  }
}

void ProjectFolder::WriteProjectFile() const {
  std::string text =
      "[ProjectManager]\n"
      "Path=.\n"
      "\n"
      "[SrcFile]\n";
  for (uint32_t number = 1; number <= moduleCount_; ++number) {
    text += "Source" + std::to_string(number) + "=" + ModuleName(number) + ".c\n";
  }
  text +=
      "\n"
      "[Options.CCTarn 0]\n"
      "Librarychk=1\n";
  AddFile("app.prj", text);
}

}  // namespace velkor::bench
