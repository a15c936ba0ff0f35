#include "readers/tarn/module_parser.h"

#include <array>

#include "readers/tarn/code_line.h"
#include "readers/tarn/code_size_line.h"
#include "readers/tarn/header_line.h"
#include "readers/tarn/symbol_line.h"

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

ModuleParser::ModuleParser(const CodePage& codePage, ModuleRecording& recording)
    : recording_(recording), scanner_(codePage), nameBuffer_(codePage), codeWatch_(recording) {}

bool ModuleParser::HandleLine(const TextLine& line, uint32_t number) {
  lineNumber_ = number;
  return (this->*StateHandlers::kOfState[state_])(line);
}

bool ModuleParser::HandleHeader(const TextLine& line) {
  scanner_.SetLine(line);
  const std::optional<HeaderLine> header = ParseHeaderLine(scanner_);
  if (!header) {
    return false;
  }
  recording_.family = header->family;
  recording_.version = header->version;
  Record(ModuleRecording::Step::kHeader);
  state_ = kBeforeSymbols;
  return true;
}

bool ModuleParser::HandleBeforeSymbols(const TextLine& line) {
  if (TakeSymbolLine(line)) {
    state_ = kSymbols;
  } else if (unmarkedLine_ == 0) {
    LookForUnmarkedCode(line);
  }
  return true;
}

bool ModuleParser::HandleSymbols(const TextLine& line) {
  const SegmentDirective directive = FindSegmentDirective(line);
  if (directive.segment) {
    state_ = kOutsideCode;
    firstSegmentIsCode_ = directive.code;
  } else {
    TakeSymbolLine(line);
  }
  return true;
}

// The first segment only leads here, even when it is one of code: what stands in it says nothing of
// runtime helpers, but is code all the same.
bool ModuleParser::HandleOutsideCode(const TextLine& line) {
  if (TakeInformationHeading(line)) {
    return true;
  }
  const SegmentDirective directive = FindSegmentDirective(line);
  if (directive.code) {
    state_ = kBeforeLabel;
  }
  firstSegmentIsCode_ = firstSegmentIsCode_ && !directive.segment;
  if (firstSegmentIsCode_) {
    const std::string_view label = FindCodeLabel(line);
    if (!label.empty()) {
      codeWatch_.TakeLabel(label, lineNumber_);
    } else if (const std::optional<CodeCall> call = FindCodeCall(line, scanner_)) {
      codeWatch_.TakeCall(call->name, lineNumber_);
    }
  }
  return true;
}

bool ModuleParser::HandleBeforeLabel(const TextLine& line) {
  if (TakeInformationHeading(line)) {
    return true;
  }
  const SegmentDirective directive = FindSegmentDirective(line);
  if (directive.segment && !directive.code) {
    state_ = kOutsideCode;
  }
  // Such a line may carry a label all the same.
  if (TakeLabel(line)) {
    state_ = kFunctionCode;
  }
  return true;
}

bool ModuleParser::HandleFunctionCode(const TextLine& line) {
  if (TakeInformationHeading(line)) {
    return true;
  }
  const SegmentDirective directive = FindSegmentDirective(line);
  if (directive.segment) {
    state_ = directive.code ? kBeforeLabel : kOutsideCode;
  } else if (!TakeLabel(line)) {
    TakeCall(line);
  }
  return true;
}

bool ModuleParser::HandleBeforeFileName(const TextLine& line) {
  if (!EnterInformationLine(line) || !scanner_.Match("$FILE")) {
    return true;
  }
  std::string_view name;
  if (scanner_.SkipBlanks() && scanner_.Token(kOnlyLineEnd, name) && !name.empty()) {
    nameBuffer_.Clear();
    nameBuffer_.Append(name);
    state_ = kFileName;
  }
  return true;
}

bool ModuleParser::HandleFileName(const TextLine& line) {
  std::string_view part;
  if (!EnterInformationLine(line) || !scanner_.Token(kOnlyLineEnd, part)) {
    return true;
  }
  if (!part.empty()) {
    nameBuffer_.Append(part);
    return true;
  }
  recording_.sourceFile = nameBuffer_.Text();
  Record(ModuleRecording::Step::kSourceFile);
  state_ = kBetweenFunctions;
  return true;
}

bool ModuleParser::HandleBetweenFunctions(const TextLine& line) {
  if (!EnterInformationLine(line)) {
    return true;
  }
  const bool isCall = scanner_.Match("$CALL");
  if ((!isCall && !scanner_.Match("$FUNC")) || !scanner_.SkipBlanks()) {
    return true;
  }
  nameBuffer_.Clear();
  if (isCall) {
    nameBuffer_.Append("_");
    state_ = kCalleeName;
    return GatherName() ? EndCallee() : true;
  }
  if (!GatherName()) {
    state_ = kFunctionName;
  } else if (!nameBuffer_.Text().empty()) {
    BeginFunction();
  }
  return true;
}

bool ModuleParser::HandleFunctionName(const TextLine& line) {
  if (EnterInformationLine(line) && GatherName()) {
    BeginFunction();
  }
  return true;
}

bool ModuleParser::HandleCalleeName(const TextLine& line) {
  return EnterInformationLine(line) && GatherName() ? EndCallee() : true;
}

bool ModuleParser::HandleBeforeCodeSize(const TextLine& line) {
  if (!EnterInformationLine(line) || !scanner_.Match("CODE SIZE=")) {
    return true;
  }
  state_ = kBetweenFunctions;
  if (const std::optional<uint32_t> figure = ParseStackFigure(scanner_)) {
    AddFunction(*figure);
  } else if (owner_ == Owner::kMade) {
    // The calls that follow belong to the function that could not be read, not to the last one.
    owner_ = Owner::kNotMade;
  }
  return true;
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
  const int marks = (symbol->isStatic ? kStatic : 0) | (symbol->presetMargin ? kPresetMargin : 0);
  if (marks == 0 && !symbol->isFunction) {
    return true;
  }
  const uint32_t name = recording_.names.Insert(symbol->name);
  MarksOf(name) |= static_cast<uint8_t>(marks);
  if (symbol->isFunction) {
    codeWatch_.AddFunctionSymbol(name);
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
  codeWatch_.TakeLabel(label, lineNumber_);
  return true;
}

void ModuleParser::TakeCall(const TextLine& line) {
  const std::optional<CodeCall> call = FindCodeCall(line, scanner_);
  if (!call) {
    return;
  }
  switch (call->target) {
    case CodeCall::Target::kHelper:
      return runtimeCalls_.AddHelper(currentName_, call->name);
    case CodeCall::Target::kStub:
      return runtimeCalls_.AddStub(currentName_, call->name);
    case CodeCall::Target::kSymbol:
      return codeWatch_.TakeCall(call->name, lineNumber_);
  }
}

// A label, or a "$FUNC" line of the code information block.
void ModuleParser::LookForUnmarkedCode(const TextLine& line) {
  if (!FindCodeLabel(line).empty() || (EnterInformationLine(line) && scanner_.Match("$FUNC"))) {
    unmarkedLine_ = lineNumber_;
  }
}

void ModuleParser::SetLack(ModuleRecording::Lack lack, uint32_t line) {
  recording_.lack = lack;
  recording_.lackLine = line;
}

void ModuleParser::Finish(bool endsInLine, uint32_t lastLine) {
  using Lack = ModuleRecording::Lack;
  codeWatch_.FindHiddenCalls();
  recording_.endsInRecord =
      owner_ == Owner::kMade && (state_ == kBetweenFunctions || state_ == kCalleeName);
  const std::optional<CodeWatch::Label> unrecorded = codeWatch_.FindUnrecordedLabel();
  if (endsInLine) {
    SetLack(Lack::kOpenLine, lastLine);
  } else if (state_ >= kBeforeFileName && state_ != kBetweenFunctions) {
    SetLack(Lack::kRest, lastLine);
  } else if (unrecorded) {
    SetLack(Lack::kRecord, unrecorded->line);
    recording_.lackName = unrecorded->name;
  } else if (state_ == kBeforeSymbols && unmarkedLine_ != 0) {
    SetLack(Lack::kSymbols, unmarkedLine_);
  } else if (state_ < kBeforeFileName && codeWatch_.HasFunctionSymbols()) {
    SetLack(Lack::kInformation, lastLine);
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
  currentName_ = "_";
  currentName_ += nameBuffer_.Text();
  state_ = kBeforeCodeSize;
}

bool ModuleParser::EndCallee() {
  state_ = kBetweenFunctions;
  switch (owner_) {
    case Owner::kNone:
      return false;
    case Owner::kNotMade:
      return true;
    case Owner::kMade:
      break;
  }
  const std::string_view name = nameBuffer_.Text();
  if (name == "_") {
    Record(ModuleRecording::Step::kIndirectCall, NameTable::kNone);
    return true;
  }
  const uint32_t symbol = recording_.names.Insert(name);
  Record(codeWatch_.IsFunctionSymbol(symbol) ? ModuleRecording::Step::kCallee
                                             : ModuleRecording::Step::kIndirectCall,
         symbol);
  return true;
}

void ModuleParser::AddFunction(uint32_t stackFigure) {
  owner_ = Owner::kMade;
  const uint32_t name = recording_.names.Insert(currentName_);
  const uint8_t marks = MarksOf(name);
  const auto firstHelper = static_cast<uint32_t>(recording_.helpers.size());
  const bool callsHelpers = runtimeCalls_.CallsHelpers(currentName_);
  if (callsHelpers) {
    for (const uint32_t helper : runtimeCalls_.Helpers(currentName_)) {
      recording_.helpers.push_back(recording_.helperNames.Insert(runtimeCalls_.HelperName(helper)));
    }
  }
  Record(ModuleRecording::Step::kFunction, static_cast<uint32_t>(recording_.functions.size()));
  recording_.functions.push_back(
      {.name = name,
       .isStatic = (marks & kStatic) != 0,
       .presetMargin = (marks & kPresetMargin) != 0,
       .callsHelpers = callsHelpers,
       .stackFigure = stackFigure,
       .cprep2Count = callsHelpers ? runtimeCalls_.Cprep2Count(currentName_) : 0,
       .firstHelper = firstHelper});
}

uint8_t& ModuleParser::MarksOf(uint32_t name) {
  if (name >= marks_.size()) {
    marks_.resize(name + size_t{1});
  }
  return marks_[name];
}

void ModuleParser::Record(ModuleRecording::Step step, uint32_t value) {
  recording_.events.push_back({step, value});
}

}  // namespace velkor
