#include "readers/module_parser.h"

#include <array>

#include "readers/code_line.h"
#include "readers/code_size_line.h"
#include "readers/symbol_line.h"

namespace velkor {

namespace {

constexpr CharacterSet kNameEnds{"( \t"};

}  // namespace

// In the order of the states.
struct ModuleParser::StateHandlers {
  static constexpr std::array<Handler, kStateCount> kOfState = {
      &ModuleParser::HandleHeader,           &ModuleParser::HandleBeforeSymbols,
      &ModuleParser::HandleSymbols,          &ModuleParser::HandleOutsideCode,
      &ModuleParser::HandleBeforeLabel,      &ModuleParser::HandleFunctionCode,
      &ModuleParser::HandleBeforeFileName,   &ModuleParser::HandleFileName,
      &ModuleParser::HandleBetweenFunctions, &ModuleParser::HandleFunctionName,
      &ModuleParser::HandleCalleeName,       &ModuleParser::HandleBeforeCodeSize,
  };
};

ModuleParser::ModuleParser(const CodePage& codePage, ModuleSink& sink)
    : sink_(sink), scanner_(codePage), nameBuffer_(codePage) {}

LineResult ModuleParser::HandleLine(const TextLine& line) {
  return (this->*StateHandlers::kOfState[state_])(line);
}

LineResult ModuleParser::HandleHeader(const TextLine& line) {
  scanner_.SetLine(line);
  const std::optional<HeaderLine> header = ParseHeaderLine(scanner_);
  if (!header) {
    return LineResult::kFormatError;
  }
  if (!sink_.AcceptHeader(*header)) {
    return LineResult::kRefused;
  }
  headerAccepted_ = true;
  state_ = kBeforeSymbols;
  return LineResult::kDone;
}

LineResult ModuleParser::HandleBeforeSymbols(const TextLine& line) {
  if (TakeSymbolLine(line)) {
    state_ = kSymbols;
  }
  return LineResult::kDone;
}

LineResult ModuleParser::HandleSymbols(const TextLine& line) {
  if (FindSegmentDirective(line).segment) {
    state_ = kOutsideCode;
  } else {
    TakeSymbolLine(line);
  }
  return LineResult::kDone;
}

LineResult ModuleParser::HandleOutsideCode(const TextLine& line) {
  if (!TakeInformationHeading(line) && FindSegmentDirective(line).code) {
    state_ = kBeforeLabel;
  }
  return LineResult::kDone;
}

LineResult ModuleParser::HandleBeforeLabel(const TextLine& line) {
  if (TakeInformationHeading(line)) {
    return LineResult::kDone;
  }
  const SegmentDirective directive = FindSegmentDirective(line);
  if (directive.segment && !directive.code) {
    state_ = kOutsideCode;
  }
  // Such a line may carry a label all the same.
  if (TakeLabel(line)) {
    state_ = kFunctionCode;
  }
  return LineResult::kDone;
}

LineResult ModuleParser::HandleFunctionCode(const TextLine& line) {
  if (TakeInformationHeading(line)) {
    return LineResult::kDone;
  }
  const SegmentDirective directive = FindSegmentDirective(line);
  if (directive.segment) {
    state_ = directive.code ? kBeforeLabel : kOutsideCode;
  } else if (!TakeLabel(line)) {
    TakeCall(line);
  }
  return LineResult::kDone;
}

LineResult ModuleParser::HandleBeforeFileName(const TextLine& line) {
  if (!EnterInformationLine(line) || !scanner_.Match("$FILE")) {
    return LineResult::kDone;
  }
  std::string_view name;
  if (scanner_.SkipBlanks() && scanner_.Token(kOnlyLineEnd, name) && !name.empty()) {
    nameBuffer_.Clear();
    nameBuffer_.Append(name);
    state_ = kFileName;
  }
  return LineResult::kDone;
}

LineResult ModuleParser::HandleFileName(const TextLine& line) {
  std::string_view part;
  if (!EnterInformationLine(line) || !scanner_.Token(kOnlyLineEnd, part)) {
    return LineResult::kDone;
  }
  if (!part.empty()) {
    nameBuffer_.Append(part);
    return LineResult::kDone;
  }
  sink_.SetSourceFile(nameBuffer_.Text());
  state_ = kBetweenFunctions;
  return LineResult::kDone;
}

LineResult ModuleParser::HandleBetweenFunctions(const TextLine& line) {
  if (!EnterInformationLine(line)) {
    return LineResult::kDone;
  }
  const bool isCall = scanner_.Match("$CALL");
  if ((!isCall && !scanner_.Match("$FUNC")) || !scanner_.SkipBlanks()) {
    return LineResult::kDone;
  }
  nameBuffer_.Clear();
  nameBuffer_.Append("_");
  const bool ended = GatherName();
  if (isCall) {
    state_ = kCalleeName;
    return ended ? EndCallee() : LineResult::kDone;
  }
  if (!ended) {
    state_ = kFunctionName;
  } else if (nameBuffer_.Text() != "_") {
    BeginFunction();
  }
  return LineResult::kDone;
}

LineResult ModuleParser::HandleFunctionName(const TextLine& line) {
  if (EnterInformationLine(line) && GatherName()) {
    BeginFunction();
  }
  return LineResult::kDone;
}

LineResult ModuleParser::HandleCalleeName(const TextLine& line) {
  return EnterInformationLine(line) && GatherName() ? EndCallee() : LineResult::kDone;
}

LineResult ModuleParser::HandleBeforeCodeSize(const TextLine& line) {
  if (!EnterInformationLine(line) || !scanner_.Match("CODE SIZE=")) {
    return LineResult::kDone;
  }
  state_ = kBetweenFunctions;
  if (const std::optional<uint32_t> figure = ParseStackFigure(scanner_)) {
    AddFunction(*figure);
  } else if (record_ == Record::kMade) {
    // The calls that follow belong to the function that could not be read, not to the last one.
    record_ = Record::kNotMade;
  }
  return LineResult::kDone;
}

bool ModuleParser::TakeSymbolLine(const TextLine& line) {
  const size_t start = line.text.find_first_not_of(" \t");
  if (start == std::string_view::npos || line.text[start] != '$') {
    return false;
  }
  scanner_.SetLine(line);
  if (!EnterSymbolLine(scanner_)) {
    return false;
  }
  const std::optional<SymbolLine> symbol = ParseSymbolFields(scanner_, nameBuffer_);
  if (!symbol) {
    return true;
  }
  if (symbol->presetMargin) {
    presetMarginNames_.Insert(symbol->name);
  }
  if (symbol->isFunction) {
    functionSymbols_.Insert(symbol->name);
  }
  if (symbol->isStatic) {
    staticNames_.Insert(symbol->name);
  }
  return true;
}

bool ModuleParser::TakeInformationHeading(const TextLine& line) {
  if (!IsInformationHeading(line)) {
    return false;
  }
  state_ = kBeforeFileName;
  return true;
}

bool ModuleParser::TakeLabel(const TextLine& line) {
  const std::string_view label = FindCodeLabel(line);
  if (label.empty()) {
    return false;
  }
  currentName_ = label;
  return true;
}

void ModuleParser::TakeCall(const TextLine& line) {
  const std::optional<RuntimeCall> call = FindRuntimeCall(line, scanner_);
  if (!call) {
    return;
  }
  if (call->stub) {
    runtimeCalls_.AddStub(currentName_, call->target);
  } else {
    runtimeCalls_.AddHelper(currentName_, call->target);
  }
}

// Behind the ";" of a line of the information block and the blanks after it.
bool ModuleParser::EnterInformationLine(const TextLine& line) {
  if (!line.text.starts_with(';')) {
    return false;
  }
  scanner_.SetLine(line);
  return scanner_.Expect(';') && scanner_.SkipBlanks();
}

// Adds the name, or the part of it, that stands at the cursor; whether it ends on this line.
bool ModuleParser::GatherName() {
  std::string_view part;
  const bool ended = scanner_.Token(kNameEnds, part);
  nameBuffer_.Append(part);
  return ended;
}

void ModuleParser::BeginFunction() {
  currentName_ = nameBuffer_.Text();
  state_ = kBeforeCodeSize;
}

LineResult ModuleParser::EndCallee() {
  state_ = kBetweenFunctions;
  const std::string_view name = nameBuffer_.Text();
  switch (record_) {
    case Record::kNone:
      return LineResult::kFormatError;
    case Record::kNotMade:
      return LineResult::kDone;
    case Record::kMade:
      break;
  }
  if (name != "_" && functionSymbols_.Contains(name)) {
    sink_.AddCallee(name);
  } else {
    sink_.AddIndirectCall();
  }
  return LineResult::kDone;
}

void ModuleParser::AddFunction(uint32_t stackFigure) {
  record_ = Record::kMade;
  sink_.AddFunction({currentName_, staticNames_.Contains(currentName_),
                     presetMarginNames_.Contains(currentName_), stackFigure, runtimeCalls_});
}

}  // namespace velkor
