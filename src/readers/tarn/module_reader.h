#pragma once

#include <cstdint>

#include "files/text_input_file.h"
#include "platform/event.h"
#include "platform/limits.h"
#include "readers/tarn/code_skip.h"
#include "readers/tarn/module_parser.h"
#include "readers/tarn/module_recording.h"

namespace velkor {

// Reads one assembler source module file into a recording. Lives for one module; enters and
// reports nothing, so that modules can be read by several threads at once, one reader each. The
// file is open and stays so.
class StkAsmModuleReader {
 public:
  static constexpr uint32_t kMaxLines = 65535;
  // In characters; a longer line is reported.
  static constexpr uint32_t kMaxLineLength = kMaxTextLength;
  static constexpr uint32_t kLinesPerStopTest = 100;

  // An empty recording, which is complete when Read returns.
  StkAsmModuleReader(TextInputFile& file, Event& stopEvent, const CodePage& codePage,
                     ModuleRecording& recording);

  void Read();

 private:
  void SkipCode();
  ModuleRecording::End ReadLines();

  TextInputFile& file_;
  Event& stopEvent_;
  ModuleRecording& recording_;
  ModuleParser parser_;
  SkippedLines skipped_;
  uint32_t lineNumber_ = 0;
};

}  // namespace velkor
