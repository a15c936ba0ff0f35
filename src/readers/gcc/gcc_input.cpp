#include "readers/gcc/gcc_input.h"

#include <algorithm>
#include <utility>

#include "readers/gcc/link_time_sets.h"
#include "readers/gcc/loose_object.h"
#include "readers/gcc/text_ends.h"
#include "readers/gcc/unit_recorder.h"

namespace velkor {
namespace {

constexpr size_t kMostPathLength = 4095;
constexpr size_t kMostObjectNotes = 50;

}  // namespace

std::unique_ptr<GccInput> GccInput::Open(std::string_view path, GccSettings settings, Host& host,
                                         StkReporter& reporter) {
  std::unique_ptr<GccInput> input(new GccInput(path, std::move(settings), host, reporter));
  input->Search();
  if (input->modules_.empty()) {
    reporter.ShowFatal(MessageKey::kE9304, {MessageFile{input->settings_.folders.front()}});
    return nullptr;
  }
  return input;
}

void GccInput::Search() {
  isPatternUsed_.assign(settings_.exclude.size(), false);
  for (const std::string& folder : settings_.folders) {
    AddFolder(folder);
  }
  std::ranges::sort(objects_);
  objects_.erase(std::unique(objects_.begin(), objects_.end()), objects_.end());
}

void GccInput::AddFolder(const std::string& folder) {
  const std::vector<PathPattern> exclude(settings_.exclude.begin(), settings_.exclude.end());
  FolderContents contents = SearchFolder(host_.files, folder, exclude);
  LinkTimeSets sets = WithoutOldLinks(host_.files, contents.callGraphs);
  oldLinks_ += sets.oldCount;
  for (const std::string& path : sets.kept) {
    if (modules_.Add(path)) {
      std::string_view below = std::string_view(path).substr(std::min(folder.size(), path.size()));
      TakePrefix(below, "/");
      TakeSuffix(below, ".ci");
      namesBelow_.emplace_back(below);
    }
  }
  std::ranges::move(contents.objects, std::back_inserter(objects_));
  std::ranges::move(contents.unreadable, std::back_inserter(unreadable_));
  for (size_t i = 0; i < isPatternUsed_.size(); ++i) {
    isPatternUsed_[i] = isPatternUsed_[i] || contents.isPatternUsed[i];
  }
}

FunctionRules GccInput::Rules() const {
  return {.sizeLimit = kGccSizeLimit, .underscored = false};
}

size_t GccInput::MostPathLength() const {
  return kMostPathLength;
}

std::string_view GccInput::GeneratorName() const {
  return reporter_.Messages().Text(MessageKey::kGccName);
}

std::string_view GccInput::ModuleKindName() const {
  return reporter_.Messages().Text(MessageKey::kCallGraphFile);
}

// The program takes the longest: it is begun before the first module.
std::unique_ptr<ModuleReader> GccInput::MakeReader() {
  BeginProgram();
  GccUnits& units = *this;
  return std::make_unique<GccModuleReader>(units, host_, reporter_);
}

std::string GccInput::ObjectOf(std::string_view graphPath) const {
  TakeSuffix(graphPath, ".ci");
  for (const std::string_view ending : {".o", ".obj"}) {
    std::string object = std::string(graphPath).append(ending);
    if (std::ranges::binary_search(objects_, object)) {
      return object;
    }
  }
  return {};
}

void GccInput::AddUnit(size_t module, const UnitRecording& recording, StkFunctionTable& functions) {
  if (!version_ && !recording.compilerVersion.empty()) {
    version_ = recording.compilerVersion;
  }
  machine_ = machine_ != 0 ? machine_ : recording.machine;
  withoutMachine_ += recording.hasMachine ? 0 : 1;
  link_.Add(recording, namesBelow_[module], functions);
}

void GccInput::ResolveCalls(FunctionDatabase database) {
  PostNotesOfFolders();
  ReadLooseObjects(database.functions);
  const std::unique_ptr<LinkedProgram> read = TakeProgram();
  const LinkedProgram* const program = read.get();
  machine_ = program != nullptr ? program->Machine() : machine_;
  PostNotesOfObjects();
  facts_ = link_.Enter(database,
                       {.program = program,
                        .programPath = settings_.elf,
                        .vectors = settings_.vectors,
                        .machine = machine_,
                        .tables = settings_.tables,
                        .tablesPath = path_},
                       reporter_);
  if (program != nullptr) {
    facts_.hasProgram = true;
    facts_.target = program->Target();
    facts_.symbols = program->Symbols();
    facts_.firstWritable = program->FirstWritable();
  }
}

StkStringList GccInput::RelatedFiles() const {
  StkStringList files;
  for (const std::string& object : objects_) {
    files.Add(object);
  }
  if (!settings_.elf.empty()) {
    files.Add(settings_.elf);
  }
  return files;
}

void GccInput::ReadLooseObjects(StkFunctionTable& functions) {
  StkStringList used;
  for (const std::string& module : modules_) {
    if (std::string object = ObjectOf(module); !object.empty()) {
      used.Add(object);
    }
  }
  for (const std::string& path : objects_) {
    if (!used.Contains(path)) {
      ReadLooseObject(path, functions);
    }
  }
}

void GccInput::ReadLooseObject(const std::string& path, StkFunctionTable& functions) {
  const OpenResult<InputFile> opened = host_.files.OpenForRead(path);
  const WholeFile file = opened.file ? WholeFile(*opened.file) : WholeFile();
  UnitRecording recording;
  const LooseObject kind = RecordLooseObject(path, file.Bytes(), reporter_.Messages(), recording);
  if (!opened.file || file.IsCutShort() || kind == LooseObject::kUnreadable) {
    PostNote("object-not-whole", std::string(reporter_.Messages().Text(MessageKey::kNoteNotRead)),
             path);
    return;
  }
  if (machine_ == 0) {
    machine_ = recording.machine;
  }
  if (kind == LooseObject::kForLinking) {
    ++forLinking_;
    firstForLinking_ = firstForLinking_.empty() ? path : firstForLinking_;
    return;
  }
  if (kind != LooseObject::kNoCode && ++withoutGraph_ > kMostObjectNotes) {
    std::erase_if(recording.notes,
                  [](const StkNote& note) { return note.rule != "object-not-whole"; });
  }
  link_.Add(recording, path, functions);
}

void GccInput::BeginProgram() {
  if (program_ == nullptr && !settings_.elf.empty()) {
    program_ = std::make_unique<ProgramAhead>(host_, settings_.elf);
  }
}

std::unique_ptr<LinkedProgram> GccInput::TakeProgram() {
  BeginProgram();
  if (program_ == nullptr) {
    return nullptr;
  }
  const StkMessages& messages = reporter_.Messages();
  ProgramAhead::Result read = program_->Take();
  program_ = nullptr;
  if (!read.isOpened) {
    PostNote("program-not-read", std::string(messages.Text(MessageKey::kNoteNotRead)),
             settings_.elf, true);
    return nullptr;
  }
  const LinkedProgram* const program = read.program.get();
  const BinaryFaults faults = program->Faults();
  for (const BinaryFaults::Entry& entry : faults.Entries()) {
    PostNote("program-not-read",
             messages.FormatMessageText(MessageKey::kNoteObjectFault, {TextOf(entry)}),
             settings_.elf, true);
  }
  if (!settings_.vectors.empty() && !program->HasSymbol(settings_.vectors)) {
    PostNote("entry-not-found",
             messages.FormatMessageText(MessageKey::kNoteNoVectors, {settings_.vectors}),
             settings_.elf, true);
  }
  if (!program->IsElf() || read.isCutShort) {
    return nullptr;
  }
  if (!program->Code().IsKnownMachine() || !program->HasSymbols()) {
    const MessageKey why =
        program->HasSymbols() ? MessageKey::kNoteMachineNotRead : MessageKey::kNoteProgramStripped;
    PostNote("code-not-read", std::string(messages.Text(why)), settings_.elf);
  }
  return std::move(read.program);
}

void GccInput::PostNote(std::string_view rule, std::string text, std::string_view file,
                        bool incomplete) {
  reporter_.PostNote({.rule = rule,
                      .text = std::move(text),
                      .file = std::string(file),
                      .function = {},
                      .incomplete = incomplete});
}

void GccInput::PostNotesOfObjects() {
  const StkMessages& messages = reporter_.Messages();
  if (withoutGraph_ > kMostObjectNotes) {
    const auto more = static_cast<uint32_t>(withoutGraph_ - kMostObjectNotes);
    PostNote("module-not-whole", messages.FormatMessageText(MessageKey::kNoteMore, {more}), path_,
             true);
  }
  if (forLinking_ != 0 && !link_.HasLinkTimeUnits()) {
    PostNote("module-not-whole",
             messages.FormatMessageText(MessageKey::kNoteNoLinkTimeGraph,
                                        {static_cast<uint32_t>(forLinking_), firstForLinking_}),
             path_, true);
  }
  if (withoutMachine_ != 0 && machine_ == 0) {
    PostNote("machine-not-known",
             messages.FormatMessageText(MessageKey::kNoteMachineNotTold,
                                        {static_cast<uint32_t>(withoutMachine_)}),
             path_);
  }
}

void GccInput::PostNotesOfFolders() {
  const StkMessages& messages = reporter_.Messages();
  for (const std::string& folder : unreadable_) {
    PostNote("folder-not-read", std::string(messages.Text(MessageKey::kNoteNotRead)), folder, true);
  }
  for (size_t i = 0; i < isPatternUsed_.size(); ++i) {
    if (!isPatternUsed_[i]) {
      PostNote("unused-pattern",
               messages.FormatMessageText(MessageKey::kNoteUnusedPattern, {settings_.exclude[i]}),
               path_);
    }
  }
  if (oldLinks_ != 0) {
    PostNote(
        "old-link",
        messages.FormatMessageText(MessageKey::kNoteOldLinks, {static_cast<uint32_t>(oldLinks_)}),
        path_);
  }
}

}  // namespace velkor
