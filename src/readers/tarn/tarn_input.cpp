#include "readers/tarn/tarn_input.h"

#include <utility>

#include "files/text_input_file.h"
#include "readers/tarn/library_table.h"
#include "readers/tarn/module_entry.h"
#include "readers/tarn/module_reader.h"
#include "readers/tarn/spec_sources.h"

namespace velkor {

namespace {

// Keeps the memory of one recording for the next.
class TarnModuleReader : public ModuleReader {
 public:
  TarnModuleReader(const StkProject& project, AcceptedCompiler& compiler, Host& host,
                   StkReporter& reporter)
      : project_(project), compiler_(compiler), host_(host), reporter_(reporter) {}

  FileFailure Open(size_t module) override {
    path_ = project_.Modules()[module];
    OpenResult<InputFile> opened = host_.files.OpenForRead(path_, Spelling::kOfProject);
    if (opened.file) {
      file_.emplace(std::move(opened.file));
    }
    return opened.failure;
  }

  void Read(Event& stopEvent) override {
    std::optional<TextInputFile> file = std::exchange(file_, std::nullopt);
    recording_.Clear();
    StkAsmModuleReader(*file, stopEvent, host_.codePage, recording_).Read();
  }

  Entered Enter(FunctionDatabase database) override {
    return ModuleEntry(path_, {database, project_, compiler_}, host_, reporter_).Enter(recording_);
  }

 private:
  const StkProject& project_;
  AcceptedCompiler& compiler_;  // for Enter alone
  Host& host_;
  StkReporter& reporter_;
  std::string path_;
  std::optional<TextInputFile> file_;
  ModuleRecording recording_;
};

}  // namespace

std::unique_ptr<TarnInput> TarnInput::Open(std::string_view path, Host& host,
                                           StkReporter& reporter) {
  std::unique_ptr<TarnInput> input(new TarnInput(host, reporter));
  return input->project_.Load(path) ? std::move(input) : nullptr;
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
  return std::make_unique<TarnModuleReader>(project_, compiler_, host_, reporter_);
}

void TarnInput::ResolveCalls(FunctionDatabase database) {
  database.functions.ResolveAllCalls();
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
