#include "readers/tarn/tarn_input.h"

#include <utility>

#include "files/text_input_file.h"
#include "readers/tarn/duplicate_definitions.h"
#include "readers/tarn/library_table.h"
#include "readers/tarn/module_entry.h"
#include "readers/tarn/module_reader.h"
#include "readers/tarn/spec_sources.h"

namespace velkor {

namespace {

// Keeps the memory of one recording for the next.
class TarnModuleReader : public ModuleReader {
 public:
  TarnModuleReader(const StkProject& project, AcceptedCompiler& compiler,
                   std::vector<StkNote>& notes, Host& host, StkReporter& reporter)
      : project_(project), compiler_(compiler), notes_(notes), host_(host), reporter_(reporter) {}

  FileFailure Open(size_t module) override {
    path_ = project_.Modules()[module];
    OpenResult<InputFile> opened = host_.files.OpenForRead(path_, Spelling::kOfProject);
    if (opened.file) {
      file_.emplace(std::move(opened.file), host_.codePage);
    }
    return opened.failure;
  }

  void Read(Event& stopEvent) override {
    std::optional<TextInputFile> file = std::exchange(file_, std::nullopt);
    recording_.Clear();
    stopEvent_ = &stopEvent;
    StkAsmModuleReader(*file, stopEvent, host_.codePage, recording_).Read();
  }

  Entered Enter(FunctionDatabase database) override {
    return ModuleEntry(path_, {database, project_, compiler_, notes_}, host_, reporter_,
                       *stopEvent_)
        .Enter(recording_);
  }

 private:
  const StkProject& project_;
  AcceptedCompiler& compiler_;   // for Enter alone
  std::vector<StkNote>& notes_;  // the same
  Host& host_;
  StkReporter& reporter_;
  std::string path_;
  std::optional<TextInputFile> file_;
  ModuleRecording recording_;
  Event* stopEvent_ = nullptr;  // of the job that reads
};

}  // namespace

std::unique_ptr<TarnInput> TarnInput::Open(std::string_view path, Host& host,
                                           StkReporter& reporter) {
  std::unique_ptr<TarnInput> input(new TarnInput(host, reporter));
  if (!input->project_.Load(path)) {
    return nullptr;
  }
  input->notes_ = input->project_.Notes();
  return input;
}

std::string_view TarnInput::GeneratorName() const {
  return reporter_.Messages().Text(MessageKey::kCompilerName);
}

std::string_view TarnInput::ModuleKindName() const {
  return reporter_.Messages().Text(MessageKey::kAssemblerSourceModuleFile);
}

std::optional<std::string> TarnInput::GeneratorVersion() const {
  return compiler_.info.version != 0 ? std::optional(compiler_.info.VersionText()) : std::nullopt;
}

std::unique_ptr<ModuleReader> TarnInput::MakeReader() {
  return std::make_unique<TarnModuleReader>(project_, compiler_, notes_, host_, reporter_);
}

void TarnInput::ResolveCalls(FunctionDatabase database) {
  database.functions.ResolveAllCalls();
  NoteDuplicateDefinitions(database.functions, reporter_.Messages(), notes_);
}

StkStringList TarnInput::RelatedFiles() const {
  StkStringList files = project_.Sources();
  for (const std::string& table : LibraryTablePaths(host_, reporter_)) {
    files.Add(table);
  }
  return files;
}

std::vector<std::unique_ptr<StkSpecReader>> TarnInput::BuildSpecSources() {
  return SpecSourcesOf(project_, compiler_, host_, reporter_);
}

}  // namespace velkor
