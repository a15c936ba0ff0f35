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
  }
  SpecLineParser line({table, *names_, kind_, path_, lineNumber, reporter_.Messages()}, text);
  if (!line.Parse()) {
    KeepStale(line, lineNumber, text);
    return HandleError(line.Error(), stopEvent);
  }
  for (const StkNote& note : line.Notes()) {
    reporter_.PostNote(note);
  }
  const bool states = line.AttributeSeen() || !line.DirectCallees().empty();
  if (line.Function() != nullptr && states) {
    Apply(table, line, lineNumber);
    specCount_ += line.AttributeSeen() ? 1U : 0U;
    ++takenCount_;
  }
  return true;
}

void StkSpecReader::KeepStale(const SpecLineParser& line, uint32_t lineNumber,
                              std::string_view text) {
  const MessageKey error = line.Error().key;
  if (kind_ == SpecificationKind::kSystemFile &&
      (error == MessageKey::kW9410 || error == MessageKey::kW9418) &&
      IsSpecStatement(text, host_.codePage)) {
    stale_.push_back({std::string(text), lineNumber, std::string(line.Missing()), line.Function()});
  }
}

void StkSpecReader::Apply(StkFunctionTable& table, const SpecLineParser& line,
                          uint32_t lineNumber) {
  StkFunction& function = *line.Function();
  if (kind_ == SpecificationKind::kLibraryTable) {
    if (line.Margin() != kNoMargin && !function.Is(FN_DEFINED)) {
      table.SetLibrarySize(function, line.Margin());
    }
    return;
  }
  if (!MayState(table, function, lineNumber)) {
    return;
  }
  if (!line.Callees().empty() || !line.DirectCallees().empty()) {
    table.StateDirectCallees(function, line.DirectCallees());
  }
  if (!line.AttributeSeen()) {
    return;
  }
  StkAdjustment adjustment;
  adjustment.margin = line.Margin();
  adjustment.depth = line.Depth();
  adjustment.line = lineNumber;
  if (!line.Callees().empty()) {
    adjustment.SetCallees(line.Callees(), table.GetCodePage());
    callsSeen_ = true;
  }
  table.SetPendingAdjustment(function, std::move(adjustment));
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
