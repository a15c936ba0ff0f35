#include "readers/module_reader.h"

#include "readers/module_entry.h"
#include "readers/module_parser.h"

namespace velkor {

namespace {

constexpr size_t kReadLimit = 5119;        // keeps one character less
constexpr uint32_t kMaxLineLength = 5119;  // a longer line is reported

}  // namespace

StkAsmModuleReader::StkAsmModuleReader(StkTextWriter& file, std::string filePath, Event& stopEvent,
                                       ModuleDestination destination, Host& host,
                                       StkReporter& reporter)
    : file_(file),
      filePath_(std::move(filePath)),
      stopEvent_(stopEvent),
      reporter_(reporter),
      entry_(std::make_unique<ModuleEntry>(filePath_, destination, host, reporter)),
      parser_(std::make_unique<ModuleParser>(host.codePage, *entry_)) {}

StkAsmModuleReader::~StkAsmModuleReader() = default;

bool StkAsmModuleReader::Read() {
  TextLine line;
  while (file_.ReadLine(line, kReadLimit)) {
    ++lineNumber_;
    if (!PassesLimits(line) || !Handle(line)) {
      return false;
    }
  }
  if (!parser_->HeaderAccepted()) {
    reporter_.PostLog(MessageKey::kW9432NoLine, {FileKindText(), filePath_});
    LogAborted();
    return false;
  }
  return true;
}

bool StkAsmModuleReader::PassesLimits(const TextLine& line) {
  if (lineNumber_ % kLinesPerStopTest == 0 && stopEvent_.Test()) {
    LogAborted();
    aborted_ = true;
    return false;
  }
  if (lineNumber_ > kMaxLines) {
    reporter_.PostWarning(MessageKey::kW9406, {filePath_, kMaxLines});
    return false;
  }
  if (line.length > kMaxLineLength) {
    reporter_.PostLog(MessageKey::kW9405, {filePath_, lineNumber_, kMaxLineLength});
  }
  return true;
}

bool StkAsmModuleReader::Handle(const TextLine& line) {
  const LineResult result = parser_->HandleLine(line);
  if (result == LineResult::kDone) {
    return true;
  }
  if (result == LineResult::kFormatError) {
    reporter_.PostWarning(MessageKey::kW9432, {FileKindText(), filePath_, lineNumber_});
  }
  LogAborted();
  return false;
}

void StkAsmModuleReader::LogAborted() {
  reporter_.PostLog(MessageKey::kReadingAborted, {filePath_});
}

std::string_view StkAsmModuleReader::FileKindText() const {
  return reporter_.Messages().Text(MessageKey::kAssemblerSourceModuleFile);
}

}  // namespace velkor
