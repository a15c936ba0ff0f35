#include "files/spec_line_parser.h"

#include <algorithm>
#include <array>

#include "files/numbers.h"
#include "platform/limits.h"

namespace velkor {

struct SpecLineParser::Keyword {
  std::string_view text;
  bool (SpecLineParser::*read)(std::string_view value);
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
  const std::string_view written = line_.TakeWord();
  const SpecName name = SpecName::Split(written, codePage_);
  if (!CheckName(name, FormatError())) {
    return false;
  }
  function_ = Find(written, name);
  if (function_ == nullptr) {
    return Fail(MessageKey::kW9410, written);
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
      return (this->*keyword.read)(line_.TakeWord());
    }
  }
  return Fail(FormatError());
}

bool SpecLineParser::ReadMargin(std::string_view value) {
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
  attributeSeen_ = true;
  return true;
}

bool SpecLineParser::ReadDepth(std::string_view value) {
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
  attributeSeen_ = true;
  return true;
}

bool SpecLineParser::ReadCallee(std::string_view value) {
  afterCall_ = true;
  const SpecName name = SpecName::Split(value, codePage_);
  if (!CheckName(name, MessageKey::kW9418)) {
    return false;
  }
  if (callCount_ == kMaxCallees) {
    return Fail(MessageKey::kW9423);
  }
  ++callCount_;
  StkFunction* callee = Find(value, name);
  if (callee == nullptr) {
    return Fail(MessageKey::kW9418);
  }
  if (!IsDirectCallee(*callee) && calleeSet_.insert(callee).second) {
    callees_.push_back(callee);
    attributeSeen_ = true;
  }
  return true;
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
  if (name.function.size() > kMaxFunctionName - (name.bracketed ? 1 : 0)) {
    return Fail(MessageKey::kW9412, name.function);
  }
  return true;
}

// Nothing written names nothing, even where a module holds a symbol that is a "_" alone.
StkFunction* SpecLineParser::Find(std::string_view written, const SpecName& name) const {
  return written.empty() ? nullptr
                         : context_.table.FindBySpecName(name.file, name.function, name.bracketed);
}

// The callees are sorted by name; those of one name are few.
bool SpecLineParser::IsDirectCallee(const StkFunction& callee) const {
  const StkFunctionList& callees = function_->callees;
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

MessageKey SpecLineParser::FormatError() const {
  switch (context_.kind) {
    case SpecificationKind::kUserFile:
      return MessageKey::kW9426;
    case SpecificationKind::kLibraryTable:
      return MessageKey::kW9428;
    case SpecificationKind::kSystemFile:
      break;
  }
  return MessageKey::kW9429;
}

}  // namespace velkor
