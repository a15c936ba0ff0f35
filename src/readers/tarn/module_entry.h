#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "messages/reporter.h"
#include "platform/host.h"
#include "readers/program_input.h"
#include "readers/tarn/accepted_compiler.h"
#include "readers/tarn/module_recording.h"
#include "readers/tarn/project.h"

namespace velkor {

// Where a module's functions go.
struct ModuleDestination {
  FunctionDatabase database;
  const StkProject& project;
  AcceptedCompiler& compiler;
  std::vector<StkNote>& notes;
};

// Enters what was recorded of one module into the function database, checks that the module comes
// from the compiler of this analysis, and reports what its reading met. In the analysis job's
// thread, one module after the other in the order of the project: the first accepted one decides
// on the compiler's version and brings the runtime helper names.
class ModuleEntry {
 public:
  using Result = ModuleReader::Entered;

  // modulePath must outlive the entry. With the stop event set, what takes long ends soon.
  ModuleEntry(const std::string& modulePath, ModuleDestination destination, Host& host,
              StkReporter& reporter, Event& stopEvent);

  // kWhole, kNotWhole: read to its end, with an accepted header.
  Result Enter(const ModuleRecording& recording);

 private:
  // What a helper of the recording is called in the function table, once that has been asked.
  using TableName = std::optional<uint32_t>;

  // False: the module is refused.
  bool EnterEvent(const ModuleRecording& recording, ModuleRecording::Event event);
  bool AcceptHeader(const ModuleRecording& recording);
  void NoteHiddenCalls(const ModuleRecording& recording);
  Result ReportEnd(const ModuleRecording& recording);
  Result NoteLack(const ModuleRecording& recording);
  void AddFunction(const ModuleRecording& recording, uint32_t number);
  void AddRuntimeHelpers(const ModuleRecording& recording, uint32_t number);
  uint32_t TableNameOf(const StkNameSet& names, uint32_t name);
  // NameTable::kNone for a helper that the runtime helper table does not name.
  uint32_t TableNameOfHelper(const StkNameSet& helperNames, uint32_t helper);
  uint32_t FrameSize(const ModuleRecording::Function& function) const;
  void LogAborted();

  const std::string& modulePath_;
  ModuleDestination destination_;
  Host& host_;
  StkReporter& reporter_;
  Event& stopEvent_;
  StkCompilerInfo moduleInfo_;
  uint32_t firstFunction_ = 0;  // of the module, in the function table
  bool versionWarned_ = false;
  const StkFileEntry* currentFile_ = nullptr;
  StkFunction* currentRecord_ = nullptr;
  std::vector<uint32_t> names_;     // in the function table, by number in the recording
  std::vector<TableName> helpers_;  // the same
};

}  // namespace velkor
