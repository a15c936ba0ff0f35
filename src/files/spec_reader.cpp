#include "files/spec_reader.h"

#include <utility>

#include "files/spec_line_parser.h"
#include "platform/limits.h"

namespace velkor {

StkSpecReader::StkSpecReader(SpecificationKind kind, std::string path, Host& host,
                             StkReporter& reporter)
    : kind_(kind), path_(std::move(path)), host_(host), reporter_(reporter) {}

std::unique_ptr<StkByteSource> StkSpecReader::OpenFile() {
  OpenResult<InputFile> opened = host_.files.OpenForRead(path_);
  notFound_ = opened.failure == FileFailure::kNotFound;
  if (opened.failure != FileFailure::kNone) {
    return nullptr;
  }
  return std::make_unique<StkFileSource>(std::move(opened.file));
}

std::unique_ptr<StkByteSource> StkSpecReader::Open() {
  std::unique_ptr<StkByteSource> source = OpenFile();
  if (source == nullptr) {
    reporter_.PostWarning(notFound_ ? MessageKey::kW9400 : MessageKey::kW9401,
                          {MessageFile{path_}});
    reporter_.PostLog(MessageKey::kReadingAborted, {path_});
  }
  return source;
}

std::unique_ptr<StkByteSource> StkSystemFileReader::Open() {
  std::unique_ptr<StkByteSource> source = OpenFile();
  if (source == nullptr && !NotFound()) {
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
  SpecLineParser line({table, kind_, path_, lineNumber, reporter_.Messages()}, text);
  if (!line.Parse()) {
    return HandleError(line.Error(), stopEvent);
  }
  if (line.Function() != nullptr && line.AttributeSeen()) {
    Apply(table, line, lineNumber);
    ++specCount_;
  }
  return true;
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
  StkAdjustment adjustment;
  adjustment.margin = line.Margin();
  adjustment.depth = line.Depth();
  adjustment.line = lineNumber;
  if (!line.Callees().empty()) {
    adjustment.SetCallees(line.Callees(), table.GetCodePage());
    callsSeen_ = true;
  }
  BeforeStating(table, function, lineNumber);
  table.SetPendingAdjustment(function, std::move(adjustment));
}

void StkSpecReader::BeforeStating(StkFunctionTable& table, const StkFunction& function,
                                  uint32_t /*lineNumber*/) {
  table.ForgetBrought(function);
}

void StkInputFileReader::BeforeStating(StkFunctionTable& table, const StkFunction& function,
                                       uint32_t lineNumber) {
  table.NoteBrought(function, path_, lineNumber);
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
