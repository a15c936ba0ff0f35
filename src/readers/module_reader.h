#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "core/file_table.h"
#include "core/function_table.h"
#include "files/text_writer.h"
#include "messages/reporter.h"
#include "platform/event.h"
#include "readers/project.h"

namespace velkor {

class ModuleEntry;
class ModuleParser;

// Where a module's functions go.
struct ModuleDestination {
  StkFunctionTable& functions;
  StkFileTable& files;
  StkProject& project;  // compilerInfo and runtimeNames
};

// Reads one assembler source module file into the function database. Lives for one module, in the
// analysis job's thread; the file stays open and is closed by the caller. Records made before an
// error stay in the database.
class StkAsmModuleReader {
 public:
  static constexpr uint32_t kMaxLines = 65535;
  static constexpr uint32_t kLinesPerStopTest = 100;

  StkAsmModuleReader(StkTextWriter& file, std::string filePath, Event& stopEvent,
                     ModuleDestination destination, Host& host, StkReporter& reporter);
  ~StkAsmModuleReader();

  // True: read to its end, with an accepted header. False: ended early, and reported.
  bool Read();
  // The user stopped the reading.
  bool Aborted() const { return aborted_; }

 private:
  bool PassesLimits(const TextLine& line);
  bool Handle(const TextLine& line);
  void LogAborted();
  std::string_view FileKindText() const;

  StkTextWriter& file_;
  const std::string filePath_;
  Event& stopEvent_;
  StkReporter& reporter_;
  uint32_t lineNumber_ = 0;
  bool aborted_ = false;
  std::unique_ptr<ModuleEntry> entry_;
  std::unique_ptr<ModuleParser> parser_;
};

}  // namespace velkor
