#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "readers/tarn/name_set.h"

namespace velkor {

// What was met while one module was read, in the order of its lines: enough to enter its functions
// into the function database, and to report what there is to report, later and by another thread.
// Nothing of the module's own bytes but the names. A value: refers to nothing outside.
struct ModuleRecording {
  enum class Step : uint8_t {
    kLongLine,      // value: its line number
    kHeader,        // family and version
    kSourceFile,    // sourceFile; before the first function
    kFunction,      // value: in functions
    kCallee,        // of the function met last; value: in names
    kIndirectCall,  // of the function met last
  };
  struct Event {
    Step step;
    uint32_t value;
  };
  // A function as the code information block and the lines before it describe it.
  struct Function {
    uint32_t name;  // the assembler symbol, in names
    bool isStatic;
    bool presetMargin;
    bool callsHelpers;
    uint32_t stackFigure;  // as printed; kOverSize above kSizeLimit
    uint32_t cprep2Count;  // lines of its code that call "cprep2"
    uint32_t firstHelper;  // in helpers, up to those of the next function
  };
  enum class End : uint8_t {
    kWhole,         // the end of the file
    kNoLine,        // the same, without one line
    kFormatError,   // in lastLine
    kTooManyLines,  // more than the limit
    kCutShort,      // the data ended before the file
    kStopped,       // by the stop event
  };

  void Clear();

  std::string family;    // of the header
  uint32_t version = 0;  // of the header, as in StkCompilerInfo
  std::string sourceFile;
  std::vector<Event> events;
  std::vector<Function> functions;
  std::vector<uint32_t> helpers;  // in helperNames, in the order of their first call
  StkNameSet names;               // every symbol that the module tells something of
  StkNameSet helperNames;
  End end = End::kWhole;
  uint32_t lastLine = 0;  // counted from 1
};

}  // namespace velkor
