#include "readers/configured_input.h"

#include "platform/path_text.h"
#include "readers/library_statements.h"

namespace velkor {

ConfiguredInput::ConfiguredInput(std::string path, Configuration configuration,
                                 std::unique_ptr<ProgramInput> input, Host& host,
                                 StkReporter& reporter)
    : path_(std::move(path)),
      configuration_(std::move(configuration)),
      input_(std::move(input)),
      host_(host),
      reporter_(reporter) {}

std::string ConfiguredInput::SystemFilePath() const {
  std::string own = input_->SystemFilePath();
  return !own.empty() ? own : path_.substr(0, path_.rfind('.')) + ".psg";
}

void ConfiguredInput::ResolveCalls(FunctionDatabase database) {
  input_->ResolveCalls(database);
  SpecNames names(database.functions);
  for (const Configuration::Call& call : configuration_.calls) {
    if (call.total) {
      BringTotal(call, database.functions, names);
    }
    if (!call.table.empty() && !Facts().hasProgram) {
      PostNoteOfCall(call, MessageKey::kNoteNoTable, call.table);
    }
  }
}

void ConfiguredInput::BringTotal(const Configuration::Call& call, StkFunctionTable& functions,
                                 SpecNames& names) {
  const CodePage& codePage = functions.GetCodePage();
  const std::string text = codePage.FromUtf8(call.function.text).value_or("");
  const SpecName name = SpecName::OfText(text, codePage);
  StkFunction* function = names.Find(name);
  const bool isAmbiguous = function != nullptr && names.IsAmbiguous(name, *function);
  if (function != nullptr && !isAmbiguous) {
    functions.BringTotal(*function, *call.total);
  } else {
    PostNoteOfCall(call, isAmbiguous ? MessageKey::kNoteSeveralCallers : MessageKey::kNoteNoCaller,
                   call.function.text);
  }
}

void ConfiguredInput::PostNoteOfCall(const Configuration::Call& call, MessageKey text,
                                     std::string_view name) {
  reporter_.PostNote({.rule = "entry-not-found",
                      .text = reporter_.Messages().FormatMessageText(text, {name}),
                      .file = path_,
                      .line = call.function.place.line,
                      .column = call.function.place.column,
                      .function = {},
                      .incomplete = true});
}

StkStringList ConfiguredInput::RelatedFiles() const {
  StkStringList files = input_->RelatedFiles();
  for (const std::string& file : configuration_.load) {
    if (!IsStatementTable(file)) {
      files.Add(PathBeside(path_, file, host_.codePage));
    }
  }
  return files;
}

std::vector<std::unique_ptr<StkSpecReader>> ConfiguredInput::BuildSpecSources() {
  std::vector<std::unique_ptr<StkSpecReader>> sources = input_->BuildSpecSources();
  if (input_->SystemFilePath().empty()) {
    sources.push_back(std::make_unique<StkSystemFileReader>(SystemFilePath(), host_, reporter_));
  }
  for (const std::string& file : configuration_.load) {
    if (const std::optional<std::string_view> text = StatementTable(file)) {
      sources.push_back(std::make_unique<LibraryStatements>(file, *text, host_, reporter_));
    } else {
      sources.push_back(
          std::make_unique<StkInputFileReader>(PathBeside(path_, file, host_.codePage), host_, reporter_));
    }
  }
  return sources;
}

std::string PathBeside(std::string_view file, std::string_view path, const CodePage& codePage) {
  if (IsRootedOnHost(path)) {
    return std::string(path);
  }
  return std::string(FolderPart(file, codePage)).append(path);
}

}  // namespace velkor
