#include "files/spec_line_parser.h"

#include <algorithm>
#include <array>
#include <utility>

#include "files/numbers.h"
#include "platform/limits.h"

namespace velkor {

struct SpecLineParser::Keyword {
  std::string_view text;
  bool (SpecLineParser::*read)();
};

SpecLineParser::SpecLineParser(const Context& context, std::string_view text)
    : context_(context),
      codePage_(context.table.GetCodePage()),
      // What stands behind a zero byte does not belong to the text.
      line_(text.substr(0, text.find('\0')), codePage_) {}

bool SpecLineParser::Parse() {
  line_.SkipBlanks();
  if (line_.AtEnd() || line_.AtComment()) {
    return true;
  }
  if (!ParseFunction()) {
    return false;
  }
  line_.SkipBlanks();
  while (!line_.AtEnd()) {
    if (!line_.Take(",")) {
      return Fail(afterCall_ ? MessageKey::kW9419 : FormatError());
    }
    line_.SkipBlanks();
    if (!ParseAttribute()) {
      return false;
    }
    line_.SkipBlanks();
  }
  return true;
}

bool SpecLineParser::ParseFunction() {
  const SpecName name = line_.TakeName();
  if (!CheckName(name, FormatError())) {
    return false;
  }
  name_ = name.written;
  function_ = Find(name);
  if (function_ == nullptr) {
    clones_ = FindClones(name);
    if (clones_.empty()) {
      return FailMissing(MessageKey::kW9410, name.written);
    }
    function_ = clones_.front();
    return true;
  }
  const auto& earlier = function_->pendingAdjustment;
  if (context_.kind != SpecificationKind::kLibraryTable && earlier != nullptr) {
    error_ = context_.messages.MakeMessage(
        MessageKey::kW9424,
        {MessageFile{context_.path}, earlier->line, MessageLine{context_.lineNumber}});
    return false;
  }
  return true;
}

bool SpecLineParser::ParseAttribute() {
  static constexpr std::array<Keyword, 3> kKeywords{{
      {"ADD=", &SpecLineParser::ReadMargin},
      {"RECTIME=", &SpecLineParser::ReadDepth},
      {"CALL=", &SpecLineParser::ReadCallee},
  }};
  for (const Keyword& keyword : kKeywords) {
    if (line_.Take(keyword.text)) {
      return (this->*keyword.read)();
    }
  }
  return Fail(FormatError());
}

bool SpecLineParser::ReadMargin() {
  const std::string_view value = line_.TakeWord();
  afterCall_ = false;
  size_t digits = 0;
  uint32_t number = 0;
  if (ParseNumberAt(value, digits, number) != NumberResult::kOk ||
      number > context_.table.SizeLimit()) {
    return Fail(MessageKey::kW9413, value);
  }
  if (margin_ != kNoMargin) {
    return Fail(MessageKey::kW9414);
  }
  margin_ = number;
  NoteIfOdd("ADD=", value, digits, number);
  attributeSeen_ = true;
  return true;
}

bool SpecLineParser::ReadDepth() {
  const std::string_view value = line_.TakeWord();
  afterCall_ = false;
  size_t digits = 0;
  uint32_t number = 0;
  if (ParseNumberAt(value, digits, number) != NumberResult::kOk || number == kNoDepth) {
    return Fail(MessageKey::kW9415, value);
  }
  if (depth_ != kNoDepth) {
    return Fail(MessageKey::kW9416);
  }
  depth_ = number;
  NoteIfOdd("RECTIME=", value, digits, number);
  attributeSeen_ = true;
  return true;
}

bool SpecLineParser::ReadCallee() {
  afterCall_ = true;
  const SpecName name = line_.TakeName();
  if (!CheckName(name, MessageKey::kW9418)) {
    return false;
  }
  if (callCount_ == kMaxCallees) {
    return Fail(MessageKey::kW9423);
  }
  ++callCount_;
  StkFunction* callee = Find(name);
  const StkFunctionList callees = callee != nullptr ? StkFunctionList{callee} : FindClones(name);
  if (callees.empty()) {
    return FailMissing(MessageKey::kW9418, name.written);
  }
  for (StkFunction* each : callees) {
    AddCallee(*each);
  }
  return true;
}

void SpecLineParser::AddCallee(StkFunction& callee) {
  if (!calleeSet_.insert(&callee).second) {
    return;
  }
  if (IsDirectCallee(callee)) {
    directCallees_.push_back(&callee);
  } else {
    callees_.push_back(&callee);
    attributeSeen_ = true;
  }
}

bool SpecLineParser::CheckName(const SpecName& name, MessageKey unclosedBracket) {
  if (name.unclosed) {
    return Fail(unclosedBracket);
  }
  if (name.qualified && name.file.empty()) {
    return Fail(MessageKey::kW9418);
  }
  if (name.file.size() > kMaxPathLength) {
    return Fail(MessageKey::kW9411, name.file);
  }
  if (name.function.size() > name.FunctionLimit()) {
    return Fail(MessageKey::kW9412, name.function);
  }
  return true;
}

StkFunction* SpecLineParser::Find(const SpecName& name) {
  StkFunction* found = context_.names.Find(name);
  if (found != nullptr && context_.names.IsAmbiguous(name, *found)) {
    NoteAmbiguity(name, *found);
  }
  return found;
}

StkFunctionList SpecLineParser::FindClones(const SpecName& name) {
  SpecNames::BaseClones gone = context_.names.FindClones(name);
  if (gone.isAmbiguous) {
    NoteAmbiguity(name, *gone.clones.front());
  }
  return std::move(gone.clones);
}

void SpecLineParser::NoteAmbiguity(const SpecName& name, const StkFunction& taken) {
  if (context_.kind == SpecificationKind::kLibraryTable) {
    return;
  }
  notes_.push_back(
      {.rule = "ambiguous-name",
       .text = context_.messages.FormatMessageText(MessageKey::kNoteAmbiguousName,
                                                   {name.written, context_.names.Shown(taken)}),
       .file = context_.path,
       .line = context_.lineNumber,
       .function = taken.index});
}

// A number ends at the first character that is no digit of its base, and the rest counts for
// nothing.
void SpecLineParser::NoteIfOdd(std::string_view keyword, std::string_view value, size_t digits,
                               uint32_t number) {
  if (digits != value.size()) {
    notes_.push_back({.rule = "odd-number",
                      .text = context_.messages.FormatMessageText(MessageKey::kNoteOddNumber,
                                                                  {keyword, value, number}),
                      .file = context_.path,
                      .line = context_.lineNumber,
                      .function = function_->index});
  }
}

// The callees are sorted by name; those of one name are few.
bool SpecLineParser::IsDirectCallee(const StkFunction& callee) const {
  const StkFunctionSpan callees = function_->callees;
  auto entry = std::lower_bound(callees.begin(), callees.end(), &callee,
                                [this](const StkFunction* left, const StkFunction* right) {
                                  return codePage_.Compare(left->name, right->name) < 0;
                                });
  for (; entry != callees.end() && (*entry)->name == callee.name; ++entry) {
    if (*entry == &callee) {
      return true;
    }
  }
  return false;
}

bool SpecLineParser::Fail(MessageKey key) {
  error_ = context_.messages.MakeMessage(
      key, {MessageFile{context_.path}, MessageLine{context_.lineNumber}});
  return false;
}

bool SpecLineParser::Fail(MessageKey key, std::string_view argument) {
  error_ = context_.messages.MakeMessage(
      key, {argument, MessageFile{context_.path}, MessageLine{context_.lineNumber}});
  return false;
}

// Only a file of the user is expected to know the program, and tells what is not in it.
bool SpecLineParser::FailMissing(MessageKey key, std::string_view name) {
  missing_ = name;
  if (context_.kind != SpecificationKind::kUserFile) {
    error_.key = key;
    return false;
  }
  return key == MessageKey::kW9410 ? Fail(key, name) : Fail(key);
}

MessageKey SpecLineParser::FormatError() const {
  switch (context_.kind) {
    case SpecificationKind::kUserFile:
      return MessageKey::kW9426;
    case SpecificationKind::kLibraryTable:
    case SpecificationKind::kStatementTable:
      return MessageKey::kW9428;
    case SpecificationKind::kSystemFile:
      break;
  }
  return MessageKey::kW9429;
}

}  // namespace velkor
