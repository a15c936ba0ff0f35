#pragma once

#include <string>

#include "readers/line_scanner.h"
#include "readers/module_sink.h"
#include "readers/name_buffer.h"
#include "readers/name_set.h"

namespace velkor {

enum class LineResult {
  kDone,
  kFormatError,
  kRefused,  // by the sink
};

// The state machine that a module's lines go through, one small handler for each state. Turns
// bytes into what it tells the sink; touches nothing else and reports nothing.
class ModuleParser {
 public:
  ModuleParser(const CodePage& codePage, ModuleSink& sink);

  // The line's bytes are not kept. After anything but kDone no further line may be given.
  LineResult HandleLine(const TextLine& line);
  bool HeaderAccepted() const { return headerAccepted_; }

 private:
  using Handler = LineResult (ModuleParser::*)(const TextLine&);
  struct StateHandlers;

  enum State : uint8_t {
    kHeader,
    kBeforeSymbols,
    kSymbols,
    kOutsideCode,
    kBeforeLabel,
    kFunctionCode,
    kBeforeFileName,
    kFileName,
    kBetweenFunctions,
    kFunctionName,
    kCalleeName,
    kBeforeCodeSize,
    kStateCount,
  };
  // Whom a "$CALL" line belongs to.
  enum class Record { kNone, kMade, kNotMade };

  LineResult HandleHeader(const TextLine& line);
  LineResult HandleBeforeSymbols(const TextLine& line);
  LineResult HandleSymbols(const TextLine& line);
  LineResult HandleOutsideCode(const TextLine& line);
  LineResult HandleBeforeLabel(const TextLine& line);
  LineResult HandleFunctionCode(const TextLine& line);
  LineResult HandleBeforeFileName(const TextLine& line);
  LineResult HandleFileName(const TextLine& line);
  LineResult HandleBetweenFunctions(const TextLine& line);
  LineResult HandleFunctionName(const TextLine& line);
  LineResult HandleCalleeName(const TextLine& line);
  LineResult HandleBeforeCodeSize(const TextLine& line);

  bool TakeSymbolLine(const TextLine& line);
  bool TakeInformationHeading(const TextLine& line);
  bool TakeLabel(const TextLine& line);
  void TakeCall(const TextLine& line);
  bool EnterInformationLine(const TextLine& line);
  bool GatherName();
  void BeginFunction();
  LineResult EndCallee();
  void AddFunction(uint32_t stackFigure);

  ModuleSink& sink_;
  State state_ = kHeader;
  bool headerAccepted_ = false;
  Record record_ = Record::kNone;
  std::string currentName_;  // the last code label; in the information block, the last "$FUNC"
  StkLineScanner scanner_;
  NameBuffer nameBuffer_;
  StkNameSet staticNames_;
  StkNameSet functionSymbols_;
  StkNameSet presetMarginNames_;
  StkRuntimeCallTable runtimeCalls_;
};

}  // namespace velkor
