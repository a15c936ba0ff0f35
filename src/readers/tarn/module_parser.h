#pragma once

#include <string>
#include <vector>

#include "readers/tarn/code_watch.h"
#include "readers/tarn/line_scanner.h"
#include "readers/tarn/module_recording.h"
#include "readers/tarn/name_buffer.h"
#include "readers/tarn/runtime_call_table.h"

namespace velkor {

// The state machine that a module's lines go through, one small handler for each state. Turns
// bytes into what it records; touches nothing else and reports nothing.
class ModuleParser {
 public:
  ModuleParser(const CodePage& codePage, ModuleRecording& recording);

  // number: of the line, from 1. Its bytes are not kept. False: a format error, after which no
  // further line may be given.
  bool HandleLine(const TextLine& line, uint32_t number);
  // Of a line that needs no handling, while InFunctionCode, in the order of the lines.
  void TakeSymbolCall(std::string_view name, uint32_t number) { codeWatch_.TakeCall(name, number); }
  // The next line is one of a function's code.
  bool InFunctionCode() const { return state_ == kFunctionCode; }
  // After the last line, however the reading ended. endsInLine: no line end is behind it.
  // lastLine: its number, lines that were skipped included.
  void Finish(bool endsInLine, uint32_t lastLine);

 private:
  using Handler = bool (ModuleParser::*)(const TextLine&);
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
  enum class Owner { kNone, kMade, kNotMade };
  // What the symbol lines say of a name.
  enum Mark : uint8_t { kStatic = 1, kPresetMargin = 2 };

  bool HandleHeader(const TextLine& line);
  bool HandleBeforeSymbols(const TextLine& line);
  bool HandleSymbols(const TextLine& line);
  bool HandleOutsideCode(const TextLine& line);
  bool HandleBeforeLabel(const TextLine& line);
  bool HandleFunctionCode(const TextLine& line);
  bool HandleBeforeFileName(const TextLine& line);
  bool HandleFileName(const TextLine& line);
  bool HandleBetweenFunctions(const TextLine& line);
  bool HandleFunctionName(const TextLine& line);
  bool HandleCalleeName(const TextLine& line);
  bool HandleBeforeCodeSize(const TextLine& line);

  bool TakeSymbolLine(const TextLine& line);
  bool TakeInformationHeading(const TextLine& line);
  bool TakeLabel(const TextLine& line);
  void TakeCall(const TextLine& line);
  void LookForUnmarkedCode(const TextLine& line);
  void SetLack(ModuleRecording::Lack lack, uint32_t line);
  bool EnterInformationLine(const TextLine& line);
  bool GatherName();
  void BeginFunction();
  bool EndCallee();
  void AddFunction(uint32_t stackFigure);
  uint8_t& MarksOf(uint32_t name);
  void Record(ModuleRecording::Step step, uint32_t value = 0);

  ModuleRecording& recording_;
  State state_ = kHeader;
  uint32_t lineNumber_ = 0;
  Owner owner_ = Owner::kNone;
  std::string currentName_;  // the last code label; in the information block, the last "$FUNC"
  StkLineScanner scanner_;
  NameBuffer nameBuffer_;
  std::vector<uint8_t> marks_;  // by name of the recording; may end before the last one
  StkRuntimeCallTable runtimeCalls_;
  CodeWatch codeWatch_;
  bool firstSegmentIsCode_ = false;
  uint32_t unmarkedLine_ = 0;  // the first that speaks of a function before any symbol line
};

}  // namespace velkor
