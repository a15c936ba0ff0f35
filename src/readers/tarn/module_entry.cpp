#include "readers/tarn/module_entry.h"

#include "core/function_text.h"
#include "readers/tarn/library_table.h"
#include "readers/tarn/module_reader.h"

namespace velkor {

namespace {

constexpr uint32_t kPrologueHelperSize = 2;  // what one call of it took of the stack, in bytes

uint32_t SeriesOfFamily(std::string_view family, const StkMessages& messages) {
  const std::string_view familyName = messages.Text(MessageKey::kFamilyName);
  if (family == familyName || family == messages.Text(MessageKey::kFamilyBannerName)) {
    return StkCompilerInfo::SeriesCode(familyName);
  }
  return 0;
}

MessageKey TextOfLack(ModuleRecording::Lack lack) {
  switch (lack) {
    case ModuleRecording::Lack::kOpenLine:
      return MessageKey::kNoteEndsInLine;
    case ModuleRecording::Lack::kRest:
      return MessageKey::kNoteEndsInStatement;
    case ModuleRecording::Lack::kRecord:
      return MessageKey::kNoteNoRecord;
    case ModuleRecording::Lack::kSymbols:
      return MessageKey::kNoteNoSymbols;
    default:
      return MessageKey::kNoteNoInformation;
  }
}

}  // namespace

ModuleEntry::ModuleEntry(const std::string& modulePath, ModuleDestination destination, Host& host,
                         StkReporter& reporter, Event& stopEvent)
    : modulePath_(modulePath),
      destination_(destination),
      host_(host),
      reporter_(reporter),
      stopEvent_(stopEvent) {}

ModuleEntry::Result ModuleEntry::Enter(const ModuleRecording& recording) {
  firstFunction_ = destination_.database.functions.Count();
  for (const ModuleRecording::Event event : recording.events) {
    if (!EnterEvent(recording, event)) {
      LogAborted();
      return stopEvent_.Test() ? Result::kStopped : Result::kFailed;
    }
  }
  NoteHiddenCalls(recording);
  const Result result = ReportEnd(recording);
  if (result != Result::kWhole && recording.endsInRecord) {
    currentRecord_->flags |= FN_HIDDEN_CALL;  // it may be one that is missing
  }
  return result;
}

bool ModuleEntry::EnterEvent(const ModuleRecording& recording, ModuleRecording::Event event) {
  using Step = ModuleRecording::Step;
  switch (event.step) {
    case Step::kLongLine:
      reporter_.PostLog(MessageKey::kW9405, {MessageFile{modulePath_}, MessageLine{event.value},
                                             StkAsmModuleReader::kMaxLineLength});
      break;
    case Step::kHeader:
      return AcceptHeader(recording);
    case Step::kSourceFile:
      currentFile_ = &destination_.database.files.Intern(recording.sourceFile);
      break;
    case Step::kFunction:
      AddFunction(recording, event.value);
      break;
    case Step::kCallee:
      destination_.database.functions.AddCallName(*currentRecord_,
                                                  TableNameOf(recording.names, event.value));
      break;
    case Step::kIndirectCall:
      currentRecord_->flags |= FN_INDIRECT_CALL;
      if (event.value != NameTable::kNone) {
        destination_.database.functions.AddPointerName(*currentRecord_,
                                                       TableNameOf(recording.names, event.value));
      }
      break;
  }
  return true;
}

bool ModuleEntry::AcceptHeader(const ModuleRecording& recording) {
  const uint32_t series = SeriesOfFamily(recording.family, reporter_.Messages());
  if (series == 0) {
    reporter_.PostWarning(MessageKey::kW9434, {MessageFile{modulePath_}});
    return false;
  }
  StkCompilerInfo& accepted = destination_.compiler.info;
  const bool isFirst = accepted.series == 0;
  moduleInfo_.AdoptOrMatchSeries(series);
  moduleInfo_.AdoptOrMatchVersion(recording.version);
  accepted.AdoptOrMatchSeries(series);
  if (!accepted.AdoptOrMatchVersion(recording.version)) {
    reporter_.PostWarning(MessageKey::kW9435, {MessageFile{modulePath_}});
    return false;
  }
  if (isFirst) {
    destination_.compiler.runtimeNames =
        LoadRuntimeNames(destination_.project, host_, reporter_, stopEvent_);
    return !stopEvent_.Test();
  }
  return true;
}

ModuleEntry::Result ModuleEntry::ReportEnd(const ModuleRecording& recording) {
  using End = ModuleRecording::End;
  const std::string_view kind = reporter_.Messages().Text(MessageKey::kAssemblerSourceModuleFile);
  switch (recording.end) {
    case End::kWhole:
      return NoteLack(recording);
    case End::kStopped:
      LogAborted();
      return Result::kStopped;
    case End::kTooManyLines:
      reporter_.PostWarning(MessageKey::kW9406,
                            {MessageFile{modulePath_}, StkAsmModuleReader::kMaxLines});
      return Result::kFailed;
    case End::kCutShort:
      reporter_.PostWarning(MessageKey::kW9401, {MessageFile{modulePath_}});
      break;
    case End::kNoLine:
      reporter_.PostLog(MessageKey::kW9432NoLine, {kind, MessageFile{modulePath_}});
      break;
    case End::kFormatError:
      reporter_.PostWarning(MessageKey::kW9432,
                            {kind, MessageFile{modulePath_}, MessageLine{recording.lastLine}});
      break;
  }
  LogAborted();
  return Result::kFailed;
}

void ModuleEntry::NoteHiddenCalls(const ModuleRecording& recording) {
  const StkFunctionList& functions = destination_.database.functions.Functions();
  for (const ModuleRecording::HiddenCall& call : recording.hiddenCalls) {
    StkFunction& caller = *functions[firstFunction_ + call.function];
    caller.flags |= FN_HIDDEN_CALL;
    destination_.notes.push_back(
        {.rule = "hidden-call",
         .text = reporter_.Messages().FormatMessageText(
             MessageKey::kNoteHiddenCall, {FunctionSpecName(caller, host_.codePage),
                                           recording.names.Name(call.callee).substr(1)}),
         .file = modulePath_,
         .line = call.line,
         .function = caller.index});
  }
}

// Says nothing in the log, whose lines are those of a module that was read to its end.
ModuleEntry::Result ModuleEntry::NoteLack(const ModuleRecording& recording) {
  if (recording.lack == ModuleRecording::Lack::kNothing) {
    return Result::kWhole;
  }
  const bool notWhole = recording.lack < ModuleRecording::Lack::kSymbols;
  const std::string_view name = recording.lack == ModuleRecording::Lack::kRecord
                                    ? recording.names.Name(recording.lackName).substr(1)
                                    : std::string_view();
  destination_.notes.push_back(
      {.rule = notWhole ? "module-not-whole" : "no-information-block",
       .text = reporter_.Messages().FormatMessageText(TextOfLack(recording.lack), {name}),
       .file = modulePath_,
       .line = recording.lackLine,
       .function = std::nullopt,
       .incomplete = notWhole});
  return notWhole ? Result::kNotWhole : Result::kWhole;
}

void ModuleEntry::AddFunction(const ModuleRecording& recording, uint32_t number) {
  const ModuleRecording::Function& function = recording.functions[number];
  StkFunction& record = destination_.database.functions.AddDefined(
      TableNameOf(recording.names, function.name), *currentFile_);
  if (!function.isStatic) {
    record.flags |= FN_GLOBAL;
  }
  if (function.presetMargin) {
    record.SetFixedExtra();
  }
  currentRecord_ = &record;
  if (function.callsHelpers) {
    AddRuntimeHelpers(recording, number);
  }
  record.frameSize = FrameSize(function);
}

void ModuleEntry::AddRuntimeHelpers(const ModuleRecording& recording, uint32_t number) {
  if (!moduleInfo_.RuntimeHelpersAccepted()) {
    if (!versionWarned_) {
      reporter_.PostWarning(MessageKey::kW9433,
                            {moduleInfo_.VersionText(), MessageFile{modulePath_}});
      versionWarned_ = true;
    }
    return;
  }
  const size_t end = number + size_t{1} < recording.functions.size()
                         ? recording.functions[number + size_t{1}].firstHelper
                         : recording.helpers.size();
  for (size_t i = recording.functions[number].firstHelper; i < end; ++i) {
    const uint32_t name = TableNameOfHelper(recording.helperNames, recording.helpers[i]);
    if (name != NameTable::kNone) {
      destination_.database.functions.AddCallName(*currentRecord_, name);
    }
  }
}

uint32_t ModuleEntry::TableNameOf(const StkNameSet& names, uint32_t name) {
  if (names_.empty()) {
    names_ = destination_.database.functions.NumbersOfNames(names.Table());
  }
  return names_[name];
}

uint32_t ModuleEntry::TableNameOfHelper(const StkNameSet& helperNames, uint32_t helper) {
  helpers_.resize(helperNames.size());
  TableName& known = helpers_[helper];
  if (!known) {
    const std::string name = "@" + std::string(helperNames.Name(helper));
    const std::optional<RuntimeNameSet>& listed = destination_.compiler.runtimeNames;
    const bool isListed = listed && listed->Contains(name);
    known = isListed ? destination_.database.functions.NumberOfName("_" + name) : NameTable::kNone;
  }
  return *known;
}

uint32_t ModuleEntry::FrameSize(const ModuleRecording::Function& function) const {
  const uint32_t figure = function.stackFigure;
  if (figure == kOverSize || !moduleInfo_.OldStackFigure()) {
    return figure;
  }
  const uint64_t correction = uint64_t{kPrologueHelperSize} * function.cprep2Count;
  // A figure that does not contain its correction is kept: the result must not be too small.
  return figure < correction ? figure : figure - static_cast<uint32_t>(correction);
}

void ModuleEntry::LogAborted() {
  reporter_.PostLog(MessageKey::kReadingAborted, {modulePath_});
}

}  // namespace velkor
