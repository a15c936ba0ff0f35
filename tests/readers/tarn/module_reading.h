#pragma once

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "readers/tarn/module_entry.h"
#include "readers/tarn/module_reader.h"
#include "support/recorder.h"
#include "support/test_host.h"

namespace velkor::testing {

inline constexpr const char* kModulePath = "C:\\p\\m.asm";

// What the reader records of a module of these bytes.
inline ModuleRecording Record(TestHost& host, std::string bytes, bool stopped = false) {
  host.files.Put(kModulePath, std::move(bytes));
  TextInputFile file(host.files.OpenForRead(kModulePath).file, host.codePage);
  Event stopEvent(Event::Reset::kManual);
  if (stopped) {
    stopEvent.Set();
  }
  ModuleRecording recording;
  StkAsmModuleReader(file, stopEvent, host.codePage, recording).Read();
  return recording;
}

// One analysis whose modules a test writes and reads.
class ModuleReading {
 public:
  explicit ModuleReading(CodePage page = CodePage::Utf8()) : host_(std::move(page)) {}

  bool Read(std::string bytes) {
    const ModuleRecording recording = Record(host_, std::move(bytes), stopped);
    const std::string path = kModulePath;
    notes.clear();
    ModuleEntry entry(path, {{functions, files}, project, compiler, notes}, host_.host,
                      recorder.reporter, notStopped_);
    const ModuleEntry::Result result = entry.Enter(recording);
    aborted = result == ModuleEntry::Result::kStopped;
    recorder.queue.Drain();
    return result == ModuleEntry::Result::kWhole || result == ModuleEntry::Result::kNotWhole;
  }

  const std::vector<std::string>& Log() const { return recorder.log.lines; }
  size_t BoxCount() const { return recorder.boxes.boxes.size(); }
  MemoryFileSystem& HostFiles() { return host_.files; }

  // The last record of that name; fails the test when there is none.
  const StkFunction& Function(std::string_view name) const {
    static const StkFunction none;
    const StkFunction* found = nullptr;
    for (const auto& function : functions.Functions()) {
      found = function->name == name ? function : found;
    }
    EXPECT_NE(found, nullptr) << name;
    return found == nullptr ? none : *found;
  }
  std::vector<std::string> CallNames(std::string_view name) const {
    const std::vector<std::string_view> names = functions.CallNames(Function(name));
    return {names.begin(), names.end()};
  }

 private:
  TestHost host_;
  Event notStopped_{Event::Reset::kManual};

 public:
  Recorder recorder{host_.codePage};
  StkFunctionTable functions{host_.codePage};
  StkFileTable files{host_.codePage};
  StkProject project{host_.host, recorder.reporter};
  AcceptedCompiler compiler;
  bool stopped = false;  // the stop event of the next Read is set
  bool aborted = false;
  std::vector<StkNote> notes;  // of the last Read
};

inline const std::string kHeader = "; Tarn C Compiler V3.70 Assembler Source\n";
inline const std::string kAborted = "C:\\p\\m.asm Reading aborted.";

inline std::string FormatErrorAt(uint32_t line) {
  return "W9432 Illegal format in assembler source module file (C:\\p\\m.asm:line " +
         std::to_string(line) + ").\nCheck the file.";
}

// A module of one function _f, made of the given pieces.
struct ModuleText {
  std::string header = kHeader;
  std::string symbols = "$DGS GLV_SYM, _f, 0, 0, 0, 0, 0, 02H\n";
  std::string code = "@@D\tDSEG\n@@C\tCSEG\n_f:\n";
  std::string file = "; *** Code Information ***\n; $FILE C:\\p\\m.c\n;\n";
  std::string functions = "; $FUNC f()\n; CODE SIZE=9 bytes, 0, STACK_SIZE=10 bytes\n";

  std::string All() const { return header + symbols + code + file + functions; }
};

}  // namespace velkor::testing
