#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/string_list.h"
#include "messages/reporter.h"
#include "platform/host.h"

namespace velkor {

struct StkProjectFile;

// A project file and what it says of the analysis. Loaded once, in the user-interface thread;
// then read by the jobs.
class StkProject {
 public:
  StkProject(Host& host, StkReporter& reporter);

  // False after a message has been shown; then the project is to be discarded.
  bool Load(std::string_view path);

  const std::string& Path() const { return path_; }
  const std::string& ProjectDirectory() const { return projectDirectory_; }
  // As the project lists them, those too that have no module.
  const StkStringList& Sources() const { return sources_; }
  const StkStringList& Modules() const { return modules_; }
  // Of sources that it names and that are not read.
  const std::vector<StkNote>& Notes() const { return notes_; }
  bool LibraryCheck() const { return libraryCheck_; }
  bool FloatingPoint() const { return floatingPoint_; }
  bool StaticModel() const { return staticModel_; }
  std::string SystemFilePath() const;

 private:
  void ReportUnreadable(FileFailure failure);
  void ReportIllegal();
  void ReadModules(const StkProjectFile& projectFile);
  void ReadOptions(const StkProjectFile& projectFile);

  Host& host_;
  StkReporter& reporter_;
  std::string path_;
  std::string projectDirectory_;
  StkStringList sources_;
  StkStringList modules_;
  std::vector<StkNote> notes_;
  bool libraryCheck_ = false;
  bool floatingPoint_ = false;
  bool staticModel_ = false;
};

}  // namespace velkor
