#include "files/spec_line_parser.h"

#include <algorithm>
#include <array>

#include "files/numbers.h"
#include "files/paths.h"

namespace velkor {

struct SpecLineParser::Name {
  std::string_view file;      // empty: not qualified
  std::string_view function;  // without file and brackets
  bool qualified = false;
  bool bracketed = false;
};

struct SpecLineParser::Keyword {
  std::string_view text;
  bool (SpecLineParser::*read)(std::string_view value);
};

SpecLineParser::SpecLineParser(const Context& context, std::string_view text)
    : context_(context),
      codePage_(context.table.GetCodePage()),
      // What stands behind a zero byte does not belong to the text.
      text_(text.substr(0, text.find('\0'))) {}

bool SpecLineParser::Parse() {
  SkipBlanks();
  if (AtEnd() || text_[position_] == '#') {
    return true;
  }
  if (!ParseFunction()) {
    return false;
  }
  SkipBlanks();
  while (!AtEnd()) {
    if (text_[position_] != ',') {
      return Fail(afterCall_ ? MessageKey::kW9419 : FormatError());
    }
    ++position_;
    SkipBlanks();
    if (!ParseAttribute()) {
      return false;
    }
    SkipBlanks();
  }
  return true;
}

bool SpecLineParser::ParseFunction() {
  const std::string_view written = TakeWord();
  Name name;
  if (!SplitName(written, FormatError(), name) || !CheckName(name)) {
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
  const std::string_view rest = text_.substr(position_);
  for (const Keyword& keyword : kKeywords) {
    if (rest.starts_with(keyword.text)) {
      position_ += keyword.text.size();
      return (this->*keyword.read)(TakeWord());
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
  Name name;
  if (!SplitName(value, MessageKey::kW9418, name) || !CheckName(name)) {
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

bool SpecLineParser::SplitName(std::string_view written, MessageKey brokenBracket, Name& name) {
  std::string_view rest = written;
  if (rest.starts_with('[')) {
    const size_t last = rest.size() - 1;
    const bool closed = rest.size() >= 2 && rest[last] == ']' &&
                        codePage_.CutLength(rest, last) == last;  // no second byte of a character
    if (!closed) {
      return Fail(brokenBracket);
    }
    rest = rest.substr(1, rest.size() - 2);
    name.bracketed = true;
  }
  size_t mark = std::string_view::npos;
  for (size_t i = 0; i < rest.size(); i += codePage_.CharLength(rest, i)) {
    if (rest[i] == '#') {
      mark = i;
    }
  }
  name.qualified = mark != std::string_view::npos;
  name.function = name.qualified ? rest.substr(mark + 1) : rest;
  name.file = name.qualified ? rest.substr(0, mark) : std::string_view();
  return true;
}

bool SpecLineParser::CheckName(const Name& name) {
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
StkFunction* SpecLineParser::Find(std::string_view written, const Name& name) const {
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

void SpecLineParser::SkipBlanks() {
  while (!AtEnd() && codePage_.IsBlank(text_, position_)) {
    position_ += codePage_.CharLength(text_, position_);
  }
}

// Up to the next comma, the next blank or the end of the line.
std::string_view SpecLineParser::TakeWord() {
  const size_t start = position_;
  while (!AtEnd() && text_[position_] != ',' && !codePage_.IsBlank(text_, position_)) {
    position_ += codePage_.CharLength(text_, position_);
  }
  return text_.substr(start, position_ - start);
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
