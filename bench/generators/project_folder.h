#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "bench/generators/module_text.h"

namespace velkor::bench {

// A folder that becomes a project: modules, then the project file app.prj. Failures are thrown as
// std::runtime_error.
class ProjectFolder {
 public:
  // Makes the folder when there is none.
  explicit ProjectFolder(std::filesystem::path folder);

  // An empty module for the source that is added next.
  ModuleText NewModule() const;
  void AddModule(const ModuleText& module);
  void AddFile(std::string_view name, std::string_view text) const;
  void WriteProjectFile() const;

  uint64_t ModuleBytes() const { return moduleBytes_; }
  uint32_t ModuleCount() const { return moduleCount_; }

 private:
  const std::filesystem::path folder_;
  uint32_t moduleCount_ = 0;
  uint64_t moduleBytes_ = 0;
};

}  // namespace velkor::bench
