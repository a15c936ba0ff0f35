#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/string_list.h"
#include "files/spec_reader.h"
#include "messages/reporter.h"
#include "platform/host.h"
#include "platform/profile_file.h"
#include "readers/tarn/compiler_info.h"
#include "readers/tarn/name_set.h"

namespace velkor {

// What Load reads of a project file while it works out the module list; gone afterwards.
struct StkProjectFile {
  std::string path;
  std::string projectDirectory;  // absolute
  std::string outputSetting;     // project-wide; possibly empty
  std::string optionsSection;
  const ProfileFile& profile;
};

// What a project must answer; the base answers nothing.
class StkProjectBase {
 public:
  virtual ~StkProjectBase() = default;
  virtual void ReadOptions(const StkProjectFile& projectFile);
  // The module path of a source of the project; false when it is not a C source.
  virtual bool LocateModuleFile(std::string_view sourceName, const StkProjectFile& projectFile,
                                std::string& modulePath);
};

// A project file and what it says of the analysis. Loaded once, in the user-interface thread;
// then read by the jobs. compilerInfo and runtimeNames are written by the analysis job only.
class StkProject : public StkProjectBase {
 public:
  static constexpr int kMaxSources = 2048;

  StkProject(Host& host, StkReporter& reporter);

  // False after a message has been shown; then the project is to be discarded.
  bool Load(std::string_view path);

  const std::string& Path() const { return path_; }
  const std::string& ProjectDirectory() const { return projectDirectory_; }
  const StkStringList& Modules() const { return modules_; }
  bool LibraryCheck() const { return libraryCheck_; }
  bool FloatingPoint() const { return floatingPoint_; }
  bool StaticModel() const { return staticModel_; }
  std::string SystemFilePath() const;
  // Applying tables, then always the stk system file.
  std::vector<std::unique_ptr<StkSpecReader>> BuildSpecSources();

  StkCompilerInfo compilerInfo;
  RuntimeNameSet runtimeNames;

  void ReadOptions(const StkProjectFile& projectFile) override;
  bool LocateModuleFile(std::string_view sourceName, const StkProjectFile& projectFile,
                        std::string& modulePath) override;

 private:
  void ReportUnreadable(FileFailure failure);
  void ReportIllegal();
  void ReadModules(const StkProjectFile& projectFile);

  Host& host_;
  StkReporter& reporter_;
  std::string path_;
  std::string projectDirectory_;
  StkStringList modules_;
  bool libraryCheck_ = false;
  bool floatingPoint_ = false;
  bool staticModel_ = false;
};

}  // namespace velkor
