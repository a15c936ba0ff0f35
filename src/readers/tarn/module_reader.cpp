#include "readers/tarn/module_reader.h"

#include <algorithm>

#include "platform/limits.h"

namespace velkor {

namespace {

constexpr size_t kReadLimit = kMaxTextLength;  // keeps one character less

}  // namespace

StkAsmModuleReader::StkAsmModuleReader(TextInputFile& file, Event& stopEvent,
                                       const CodePage& codePage, ModuleRecording& recording)
    : file_(file), stopEvent_(stopEvent), recording_(recording), parser_(codePage, recording) {
  file_.StopOn(stopEvent);
}

void StkAsmModuleReader::Read() {
  recording_.end = ReadLines();
  recording_.lastLine = lineNumber_;
  parser_.Finish(!file_.LastLineEnded(), lineNumber_);
}

ModuleRecording::End StkAsmModuleReader::ReadLines() {
  using End = ModuleRecording::End;
  TextLine line;
  while (file_.ReadLine(line, kReadLimit) && !file_.CutShort() && !file_.Stopped()) {
    ++lineNumber_;
    if (lineNumber_ % kLinesPerStopTest == 0 && stopEvent_.Test()) {
      return End::kStopped;
    }
    if (lineNumber_ > kMaxLines) {
      return End::kTooManyLines;
    }
    if (line.length > kMaxLineLength) {
      recording_.events.push_back({ModuleRecording::Step::kLongLine, lineNumber_});
    }
    if (!parser_.HandleLine(line, lineNumber_)) {
      return End::kFormatError;
    }
    if (parser_.InFunctionCode()) {
      SkipCode();
    }
  }
  if (file_.Stopped()) {
    return End::kStopped;
  }
  if (file_.CutShort()) {
    return End::kCutShort;
  }
  return lineNumber_ == 0 ? End::kNoLine : End::kWhole;
}

// Not the line at which the stop event is tested next, and none behind the last line allowed.
void StkAsmModuleReader::SkipCode() {
  const uint32_t beforeTest = kLinesPerStopTest - 1 - lineNumber_ % kLinesPerStopTest;
  const uint32_t mostLines = std::min(beforeTest, kMaxLines - lineNumber_);
  SkipPlainCode(file_.BytesAtHand(), mostLines, kReadLimit - 1, skipped_);
  for (const SkippedLines::Call& call : skipped_.calls) {
    parser_.TakeSymbolCall(call.name, lineNumber_ + call.line);
  }
  file_.SkipBytes(skipped_.bytes);
  lineNumber_ += skipped_.lines;
}

}  // namespace velkor
