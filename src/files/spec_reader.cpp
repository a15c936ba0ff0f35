#include "files/spec_reader.h"

#include <optional>
#include <utility>

#include "core/function_text.h"
#include "files/spec_language.h"
#include "files/spec_line_parser.h"
#include "platform/limits.h"

namespace velkor {

StkNote NoteOf(const StaleStatement& stale, const std::string& path, const StkMessages& messages) {
  return {.rule = "stale-statement",
          .text = messages.FormatMessageText(MessageKey::kNoteStaleStatement, {stale.missing}),
          .file = path,
          .line = stale.line,
          .function = std::nullopt};
}

StkSpecReader::StkSpecReader(SpecificationKind kind, std::string path, Host& host,
                             StkReporter& reporter)
    : kind_(kind), path_(std::move(path)), host_(host), reporter_(reporter) {}

std::unique_ptr<StkByteSource> StkSpecReader::OpenFile() {
  return Taken(host_.files.OpenForRead(path_));
}

std::unique_ptr<StkByteSource> StkSpecReader::Taken(OpenResult<InputFile> opened) {
  notFound_ = opened.failure == FileFailure::kNotFound;
  if (opened.failure != FileFailure::kNone) {
    return nullptr;
  }
  return std::make_unique<StkFileSource>(std::move(opened.file));
}

std::unique_ptr<StkByteSource> StkSpecReader::Open(const FileSystem::GiveUp& /*giveUp*/) {
  std::unique_ptr<StkByteSource> source = OpenFile();
  if (source == nullptr) {
    reporter_.PostWarning(notFound_ ? MessageKey::kW9400 : MessageKey::kW9401,
                          {MessageFile{path_}});
    reporter_.PostLog(MessageKey::kReadingAborted, {path_});
  }
  return source;
}

std::unique_ptr<StkByteSource> StkSystemFileReader::Open(const FileSystem::GiveUp& giveUp) {
  std::unique_ptr<StkByteSource> source;
  const bool allowed = !host_.files.LeadsOutOfFolder(path_);
  if (allowed) {
    source = Taken(host_.files.OpenWhenFree(path_, giveUp));
  }
  const bool isMissing = allowed && NotFound();
  if (source == nullptr && !isMissing && !(giveUp && giveUp())) {
    reporter_.PostWarning(MessageKey::kW9429, {MessageFile{path_}});
  }
  return source;
}

bool StkSpecReader::ParseLine(StkFunctionTable& table, uint32_t lineNumber, std::string_view text,
                              uint64_t length, Event& stopEvent) {
  if (length > kMaxTextLength) {
    return HandleError(reporter_.Messages().MakeMessage(
                           MessageKey::kW9425, {MessageFile{path_}, MessageLine{lineNumber}}),
                       stopEvent);
  }
  if (names_ == nullptr) {
    names_ = std::make_unique<SpecNames>(table);
    baseLines_ = std::make_unique<BaseLines>(table);
  }
  SpecLineParser line({table, *names_, kind_, path_, lineNumber, reporter_.Messages()}, text);
  if (!line.Parse()) {
    KeepStale(line, lineNumber, text);
    TakeName(table, line);
    return HandleError(line.Error(), stopEvent);
  }
  if (const std::optional<uint32_t> earlier = baseLines_->Earlier(line)) {
    return HandleError(
        reporter_.Messages().MakeMessage(MessageKey::kW9424,
                                         {MessageFile{path_}, *earlier, MessageLine{lineNumber}}),
        stopEvent);
  }
  for (const StkNote& note : line.Notes()) {
    reporter_.PostNote(note);
  }
  TakeName(table, line);
  if (!line.StatesSomething()) {
    return true;
  }
  const bool isOfGone = !line.Clones().empty();
  if (isOfGone || Apply(table, line, lineNumber)) {
    baseLines_->Take(line, lineNumber, text);
  }
  takenCount_ += isOfGone ? 0U : 1U;
  return true;
}

// A clone that a line names has nothing from another line of this file.
void StkSpecReader::TakeName(StkFunctionTable& table, const SpecLineParser& line) {
  baseLines_->TakeName(line);
  const StkFunction* function = line.Function();
  if (function != nullptr && baseLines_->IsNamed(*function) && !IsOfInput() &&
      kind_ != SpecificationKind::kLibraryTable) {
    table.Clones().SetPending(*function, {.isOwn = true, .baseLine = {}});
  }
}

void StkSpecReader::KeepStale(const SpecLineParser& line, uint32_t lineNumber,
                              std::string_view text) {
  const MessageKey error = line.Error().key;
  if (kind_ == SpecificationKind::kSystemFile &&
      (error == MessageKey::kW9410 || error == MessageKey::kW9418) &&
      IsSpecStatement(text, host_.codePage)) {
    StkFunction* function = line.Clones().empty() ? line.Function() : nullptr;
    stale_.push_back({std::string(text), lineNumber, std::string(line.Missing()), function});
  }
}

bool StkSpecReader::Apply(StkFunctionTable& table, const SpecLineParser& line,
                          uint32_t lineNumber) {
  StkFunction& function = *line.Function();
  if (kind_ == SpecificationKind::kLibraryTable) {
    specCount_ += line.AttributeSeen() ? 1U : 0U;
    if (line.Margin() != kNoMargin && !function.Is(FN_DEFINED)) {
      table.SetLibrarySize(function, line.Margin());
    }
    return true;
  }
  if (!MayState(table, function, lineNumber)) {
    return false;
  }
  if (function.Is(FN_CLONE)) {
    table.Clones().SetPending(function, {.isOwn = true, .baseLine = {}});
  }
  StkAdjustment stated;
  stated.margin = line.Margin();
  stated.depth = line.Depth();
  stated.line = lineNumber;
  stated.SetCallees(line.Callees(), table.GetCodePage());
  stated.directCallees = line.DirectCallees();
  State(table, function, std::move(stated));
  return true;
}

void StkSpecReader::State(StkFunctionTable& table, StkFunction& function, StkAdjustment stated) {
  const bool states = stated.Adjusts();
  const bool calls = !stated.callees->empty();
  if (calls || !stated.directCallees.empty()) {
    table.StateDirectCallees(function, stated.directCallees);
  }
  if (!states) {
    return;
  }
  ++specCount_;
  callsSeen_ = callsSeen_ || calls;
  stated.directCallees.clear();
  if (!calls) {
    stated.callees.reset();
  }
  table.SetPendingAdjustment(function, std::move(stated));
}

void StkSpecReader::EndLines(StkFunctionTable& table) {
  if (baseLines_ == nullptr || kind_ == SpecificationKind::kLibraryTable) {
    return;
  }
  for (const BaseLines::Line& line : baseLines_->Lines()) {
    StateForClones(table, line);
    if (baseLines_->HoldsForNone(line)) {
      KeepWithoutEffect(line);
    } else {
      takenCount_ += line.base == nullptr ? 1U : 0U;
    }
  }
}

void StkSpecReader::StateForClones(StkFunctionTable& table, const BaseLines::Line& line) {
  for (StkFunction* clone : line.clones) {
    if (baseLines_->IsNamed(*clone)) {
      continue;
    }
    StkAdjustment stated = line.For(*clone, table.GetCodePage());
    if (table.Brought(*clone) != nullptr && !IsOfInput()) {
      table.KeepUnderBrought(*clone, stated, line.Origin());
    } else if (MayState(table, *clone, stated.line)) {
      table.Clones().SetPending(*clone, line.Origin());
      State(table, *clone, std::move(stated));
    }
  }
}

// Each of its clones is named by another line.
void StkSpecReader::KeepWithoutEffect(const BaseLines::Line& line) {
  if (kind_ == SpecificationKind::kSystemFile) {
    stale_.push_back({line.text, line.stated.line, line.name, nullptr});
  }
}

bool StkSpecReader::MayState(StkFunctionTable& table, const StkFunction& function,
                             uint32_t /*lineNumber*/) {
  const BroughtStatement* brought = table.Brought(function);
  if (brought != nullptr) {
    reporter_.PostWarning(MessageKey::kW9468,
                          {FunctionSpecName(function, host_.codePage),
                           MessageFile{brought->place.path}, MessageLine{brought->place.line}});
  }
  return brought == nullptr;
}

bool StkInputFileReader::MayState(StkFunctionTable& table, const StkFunction& function,
                                  uint32_t lineNumber) {
  table.NoteBrought(function, path_, lineNumber);
  return true;
}

bool StkSpecReader::HandleError(const StkMessage& error, Event& stopEvent) {
  const bool unknownName = error.key == MessageKey::kW9410 || error.key == MessageKey::kW9418;
  if (kind_ != SpecificationKind::kUserFile && unknownName) {
    return true;
  }
  if (kind_ == SpecificationKind::kLibraryTable) {
    reporter_.PostWarning(MessageKey::kW9428, {MessageFile{path_}, MessageLine{error.line}});
    answer_ = StopAnswer::kAbort;
  } else if (kind_ == SpecificationKind::kSystemFile && reporter_.OpenedFromCommandLine()) {
    reporter_.PostWarning(MessageKey::kW9429, {MessageFile{path_}, MessageLine{error.line}});
    answer_ = StopAnswer::kAbort;
  } else {
    answer_ = reporter_.AskStopReading(stopEvent, answer_, error);
  }
  return answer_ != StopAnswer::kAbort;
}

}  // namespace velkor
