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
    kIndirectCall,  // likewise; the pointer in names, NameTable::kNone: without a name
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
  // A call in the code of a function that its record does not list.
  struct HiddenCall {
    uint32_t function;  // in functions
    uint32_t callee;    // in names
    uint32_t line;      // of its first one
  };
  // What a module that was read to its end lacks all the same.
  enum class Lack : uint8_t {
    kNothing,
    // It is not whole:
    kOpenLine,  // it ends in the middle of a line
    kRest,      // in the middle of a statement of the code information block
    kRecord,    // of the function name, whose code it holds
    // It may be whole, but was written without what the analysis needs:
    kSymbols,      // the symbol lines
    kInformation,  // the code information block
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
  std::vector<uint32_t> helpers;        // in helperNames, in the order of their first call
  std::vector<HiddenCall> hiddenCalls;  // by function, then in the order of the code
  StkNameSet names;                     // every symbol that the module tells something of
  StkNameSet helperNames;
  End end = End::kWhole;
  uint32_t lastLine = 0;  // counted from 1
  Lack lack = Lack::kNothing;
  uint32_t lackLine = 0;  // where that shows
  uint32_t lackName = 0;  // in names; of kRecord
  // Nothing stands behind the record of the last function: what is missing may be calls of it.
  bool endsInRecord = false;
};

}  // namespace velkor
