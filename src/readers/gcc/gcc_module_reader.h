#pragma once

#include <memory>
#include <string>

#include "readers/gcc/gcc_input.h"
#include "readers/gcc/unit_recording.h"
#include "readers/gcc/whole_file.h"

namespace velkor {

// Reads one call graph file, with the object beside it, after the other.
class GccModuleReader : public ModuleReader {
 public:
  GccModuleReader(GccInput& input, Host& host, StkReporter& reporter)
      : input_(input), host_(host), reporter_(reporter) {}

  FileFailure Open(size_t module) override;
  void Read(Event& stopEvent) override;
  Entered Enter(FunctionDatabase database) override;

 private:
  void NoteNotRead(const std::string& file);
  void NoteNewerSource();

  GccInput& input_;  // in Enter alone changed
  Host& host_;
  StkReporter& reporter_;
  size_t module_ = 0;
  std::string path_;
  std::unique_ptr<InputFile> file_;
  WholeFile graph_;  // kept for the next module's
  WholeFile object_;
  bool stopped_ = false;
  UnitRecording recording_;
};

}  // namespace velkor
