#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "readers/gcc/source_finder.h"
#include "readers/gcc/unit_recording.h"
#include "readers/gcc/whole_file.h"
#include "readers/program_input.h"

namespace velkor {

// The units of an input, as the readers of its modules know them.
class GccUnits {
 public:
  virtual ~GccUnits() = default;
  virtual const std::string& GraphPath(size_t module) const = 0;
  // Of the object beside a call graph file; empty: none.
  virtual std::string ObjectOf(std::string_view graphPath) const = 0;
  // In the thread of the job.
  virtual void AddUnit(size_t module, const UnitRecording& recording,
                       StkFunctionTable& functions) = 0;
};

// Reads one call graph file, with the object beside it, after the other.
class GccModuleReader : public ModuleReader {
 public:
  GccModuleReader(GccUnits& units, Host& host, StkReporter& reporter)
      : units_(units), host_(host), reporter_(reporter), sources_(host) {}

  FileFailure Open(size_t module) override;
  void Read(Event& stopEvent) override;
  Entered Enter(FunctionDatabase database) override;

 private:
  void NoteNotRead(const std::string& file);
  void NoteNewerSource();

  GccUnits& units_;  // in Enter alone changed
  Host& host_;
  StkReporter& reporter_;
  size_t module_ = 0;
  std::string path_;
  SourceFinder sources_;
  std::unique_ptr<InputFile> file_;
  WholeFile graph_;  // kept for the next module's
  WholeFile object_;
  bool stopped_ = false;
  UnitRecording recording_;
};

}  // namespace velkor
