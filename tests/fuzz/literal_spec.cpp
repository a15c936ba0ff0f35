#include "fuzz/literal_spec.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "fuzz/literal_number.h"

namespace velkor::testing {

namespace {

constexpr size_t kLineLimit = 5120;
constexpr size_t kMostCallees = 1024;

struct Name {
  std::string written, file, function;
  bool bracketed = false;
  bool quoted = false;
  std::string error;
};

std::string FormatErrorOf(SpecificationKind kind) {
  return kind == SpecificationKind::kUserFile       ? "W9426"
         : kind == SpecificationKind::kLibraryTable ? "W9428"
                                                    : "W9429";
}

std::vector<uint32_t> Indices(const StkFunctionList& list) {
  std::vector<uint32_t> indices;
  for (const StkFunction* function : list) {
    indices.push_back(function->index);
  }
  std::sort(indices.begin(), indices.end());
  return indices;
}

StkFunction* FindSymbol(const StkFunctionTable& table, const std::string& symbol,
                        const std::string& file) {
  const CodePage& codePage = table.GetCodePage();
  StkFunction* other = nullptr;
  for (StkFunction* function : table.Functions()) {
    if (function->name != symbol) {
      continue;
    }
    const bool isStatic = function->Is(FN_DEFINED) && !function->Is(FN_GLOBAL);
    if (!file.empty()) {
      if (isStatic && codePage.EqualIgnoreCase(function->file->BaseName(codePage), file)) {
        return function;
      }
    } else if (function->Is(FN_GLOBAL)) {
      return function;
    } else if (other == nullptr) {
      other = function;
    }
  }
  return other;
}

StkFunction* Undefined(const StkFunctionTable& table, const std::string& symbol) {
  for (StkFunction* function : table.Functions()) {
    if (function->name == symbol && !function->Is(FN_DEFINED)) {
      return function;
    }
  }
  return nullptr;
}

std::vector<std::string> PathParts(const std::string& path, const CodePage& codePage) {
  std::vector<std::string> parts(1);
  for (size_t i = 0; i < path.size(); i += codePage.CharLength(path, i)) {
    const std::string character = path.substr(i, codePage.CharLength(path, i));
    if (character == "\\" || character == "/" || character == ":") {
      parts.emplace_back();
    } else {
      parts.back() += character;
    }
  }
  return parts;
}

bool EndsWith(std::vector<std::string> path, const std::vector<std::string>& tail,
              const CodePage& codePage) {
  if (path.size() < tail.size()) {
    return false;
  }
  path.erase(path.begin(), path.end() - static_cast<std::ptrdiff_t>(tail.size()));
  return std::ranges::equal(path, tail, [&](const std::string& left, const std::string& right) {
    return codePage.EqualIgnoreCase(left, right);
  });
}

// The one whose path ends so: a static one before a global one, all of the path before its end,
// the very letters before other ones.
StkFunction* FindInFile(const StkFunctionTable& table, const std::string& file,
                        const std::string& symbol) {
  const CodePage& codePage = table.GetCodePage();
  const std::vector<std::string> tail = PathParts(file, codePage);
  for (const bool global : {false, true}) {
    StkFunctionList fitting;
    for (StkFunction* function : table.Functions()) {
      if (function->Is(FN_DEFINED) && function->Is(FN_GLOBAL) == global &&
          function->name == symbol &&
          EndsWith(PathParts(function->file->name, codePage), tail, codePage)) {
        fitting.push_back(function);
      }
    }
    StkFunctionList better;
    std::ranges::copy_if(fitting, std::back_inserter(better), [&](const StkFunction* function) {
      return PathParts(function->file->name, codePage).size() == tail.size();
    });
    fitting = better.empty() ? fitting : better;
    better.clear();
    std::ranges::copy_if(fitting, std::back_inserter(better), [&](const StkFunction* function) {
      return function->file->name.ends_with(file);
    });
    fitting = better.empty() ? fitting : better;
    if (fitting.size() == 1) {
      return fitting.front();
    }
  }
  return nullptr;
}

class LiteralParser {
 public:
  LiteralParser(std::string_view line, SpecificationKind kind, const StkFunctionTable& table)
      : table_(table), codePage_(table.GetCodePage()), kind_(kind) {
    const std::string_view text = line.substr(0, line.find('\0'));
    for (size_t i = 0; i < text.size(); i += codePage_.CharLength(text, i)) {
      characters_.emplace_back(text.substr(i, codePage_.CharLength(text, i)));
    }
  }

  LiteralLine Parse(const std::vector<bool>& taken) {
    SkipBlanks();
    if (AtEnd() || Next() == "#") {
      return line_;
    }
    const Name name = TakeName(FormatErrorOf(kind_));
    if (Fails(name.error)) {
      return line_;
    }
    line_.function = Find(name);
    if (line_.function == nullptr) {
      Fails("W9410");
    } else if (kind_ != SpecificationKind::kLibraryTable && taken[line_.function->index]) {
      Fails("W9424");
    } else {
      SkipBlanks();
      while (line_.error.empty() && !AtEnd()) {
        TakeAttribute();
      }
    }
    return line_;
  }

 private:
  bool AtEnd() const { return next_ == characters_.size(); }
  const std::string& Next() const { return characters_[next_]; }
  bool Fails(const std::string& error) {
    line_.error = error;
    return !error.empty();
  }
  bool AtBlank() const { return codePage_.IsBlank(Next(), 0); }
  void SkipBlanks() {
    while (!AtEnd() && AtBlank()) {
      ++next_;
    }
  }
  std::vector<std::string> TakeWord() {
    std::vector<std::string> word;
    while (!AtEnd() && Next() != "," && !AtBlank()) {
      word.push_back(characters_[next_++]);
    }
    return word;
  }
  static std::string Joined(const std::vector<std::string>& word) {
    std::string text;
    for (const std::string& character : word) {
      text += character;
    }
    return text;
  }

  std::string At(size_t i) const { return i < characters_.size() ? characters_[i] : ""; }
  bool EndsAt(size_t i) const {
    return i >= characters_.size() || At(i) == "," || codePage_.IsBlank(At(i), 0);
  }
  // What stands between the quote at i and the one that ends it, behind which i is then.
  std::optional<std::string> Quote(size_t& i) const {
    std::string text;
    for (size_t at = i + 1; At(i) == "\"" && at < characters_.size(); ++at) {
      if (At(at) == "\"" && At(++at) != "\"") {
        i = at;
        return text;
      }
      text += At(at);
    }
    return std::nullopt;
  }
  std::optional<std::string> FunctionPart(size_t& i, bool bracketed) const {
    if (At(i) == "\"") {
      return Quote(i);
    }
    std::string text;
    for (; !EndsAt(i) && !(bracketed && At(i) == "]" && EndsAt(i + 1)); ++i) {
      text += At(i);
    }
    return text;
  }
  // Nothing is passed where the quotes make no name.
  std::optional<Name> TakeQuotedName() {
    Name name;
    name.quoted = true;
    name.bracketed = At(next_) == "[";
    size_t i = next_ + (name.bracketed ? 1 : 0);
    bool qualified = false;
    std::optional<std::string> function;
    if (At(i) == "\"") {
      function = Quote(i);
      qualified = function && At(i) == "#";
    } else {
      for (function = ""; !EndsAt(i) && !qualified; i += qualified ? 0 : 1) {
        qualified = !function->empty() && At(i) == "#" && At(i + 1) == "\"";
        *function += qualified ? "" : At(i);
      }
      function = qualified ? function : std::nullopt;
    }
    if (qualified) {
      name.file = *function;
      name.error = name.file.empty() ? "W9418" : "";
      function = FunctionPart(++i, name.bracketed);
    }
    if (!function || (name.bracketed && At(i++) != "]") || !EndsAt(i)) {
      return std::nullopt;
    }
    name.function = *function;
    name.written = Joined({characters_.begin() + static_cast<std::ptrdiff_t>(next_),
                           characters_.begin() + static_cast<std::ptrdiff_t>(i)});
    next_ = i;
    return name;
  }

  Name TakeName(const std::string& brokenBracket) {
    if (std::optional<Name> name = TakeQuotedName()) {
      CheckLengths(*name);
      return *name;
    }
    std::vector<std::string> word = TakeWord();
    Name name;
    name.written = Joined(word);
    if (!word.empty() && word.front() == "[") {
      if (word.size() < 2 || word.back() != "]") {
        name.error = brokenBracket;
        return name;
      }
      name.bracketed = true;
      word = {word.begin() + 1, word.end() - 1};
    }
    const auto mark = std::find(word.rbegin(), word.rend(), "#");
    const auto function = mark.base();
    const bool qualified = mark != word.rend();
    name.function = Joined({function, word.end()});
    name.file = qualified ? Joined({word.begin(), function - 1}) : "";
    if (qualified && name.file.empty()) {
      name.error = "W9418";
    }
    CheckLengths(name);
    return name;
  }
  static void CheckLengths(Name& name) {
    if (!name.error.empty()) {
      return;
    }
    if (name.file.size() > 255) {
      name.error = "W9411";
    } else if (name.function.size() > (name.bracketed ? 1021U : 1022U)) {
      name.error = "W9412";
    }
  }

  StkFunction* Find(const Name& name) const {
    if (!name.file.empty() && (name.quoted || PathParts(name.file, codePage_).size() > 1)) {
      return FindInFile(table_, name.file, "_" + name.function);
    }
    if (name.quoted) {
      StkFunction* undefined = name.bracketed ? Undefined(table_, "_" + name.function) : nullptr;
      return undefined != nullptr ? undefined : FindSymbol(table_, "_" + name.function, "");
    }
    return name.written.empty() ? nullptr
                                : FindLiterally(table_, name.file, name.function, name.bracketed);
  }

  void TakeAttribute() {
    if (Next() != ",") {
      Fails(afterCallee_ ? "W9419" : FormatErrorOf(kind_));
      return;
    }
    ++next_;
    SkipBlanks();
    const std::string rest =
        Joined({characters_.begin() + static_cast<std::ptrdiff_t>(next_), characters_.end()});
    afterCallee_ = rest.starts_with("CALL=");
    if (rest.starts_with("ADD=")) {
      next_ += 4;
      TakeNumber(0, kSizeLimit, kNoMargin, "W9413", "W9414", line_.margin);
    } else if (rest.starts_with("RECTIME=")) {
      next_ += 8;
      TakeNumber(1, 0xFFFFFFFF, kNoDepth, "W9415", "W9416", line_.depth);
    } else if (afterCallee_) {
      next_ += 5;
      TakeCallee();
    } else {
      Fails(FormatErrorOf(kind_));
    }
    SkipBlanks();
  }
  void TakeNumber(uint32_t least, uint32_t most, uint32_t none, const char* illegal,
                  const char* multiple, uint32_t& value) {
    const std::optional<uint32_t> number = LeadingNumber(Joined(TakeWord()));
    if (!number || *number < least || *number > most) {
      Fails(illegal);
    } else if (value != none) {
      Fails(multiple);
    } else {
      value = *number;
      line_.statesSomething = true;
    }
  }
  void TakeCallee() {
    const Name name = TakeName("W9418");
    if (Fails(name.error)) {
      return;
    }
    if (++calleesMet_ > kMostCallees) {
      Fails("W9423");
      return;
    }
    StkFunction* callee = Find(name);
    if (callee == nullptr) {
      Fails("W9418");
      return;
    }
    const auto has = [callee](StkFunctionSpan list) {
      return std::find(list.begin(), list.end(), callee) != list.end();
    };
    if (!has(line_.function->callees) && !has(line_.callees)) {
      line_.callees.push_back(callee);
      line_.statesSomething = true;
    }
  }

  const StkFunctionTable& table_;
  const CodePage& codePage_;
  const SpecificationKind kind_;
  std::vector<std::string> characters_;
  size_t next_ = 0;
  bool afterCallee_ = false;
  size_t calleesMet_ = 0;
  LiteralLine line_;
};

LiteralLine ReadLiterally(std::string_view line, SpecificationKind kind,
                          const StkFunctionTable& table, const std::vector<bool>& taken) {
  if (line.size() >= kLineLimit) {
    LiteralLine tooLong;
    tooLong.error = "W9425";
    return tooLong;
  }
  return LiteralParser(line, kind, table).Parse(taken);
}

std::vector<std::string> LiteralLines(std::string_view text) {
  std::vector<std::string> lines;
  std::string line;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\r' && text[i] != '\n') {
      line += text[i];
      continue;
    }
    lines.push_back(line);
    line.clear();
    i += text.substr(i, 2) == "\r\n" ? 1U : 0U;
  }
  if (!line.empty()) {
    lines.push_back(line);
  }
  return lines;
}

}  // namespace

StkFunction* FindLiterally(const StkFunctionTable& table, const std::string& file,
                           const std::string& name, bool bracketed) {
  StkFunction* found = nullptr;
  if (!bracketed && name.starts_with('_')) {
    found = FindSymbol(table, name, file);
  }
  return found != nullptr ? found : FindSymbol(table, "_" + name, file);
}

Statements InForce(const StkFunctionTable& table) {
  Statements statements(table.Count());
  for (const auto& function : table.Functions()) {
    if (function->adjustment != nullptr) {
      const Statement statement{function->adjustment->margin, function->adjustment->depth,
                                Indices(function->extraCallees)};
      if (!statement.StatesNothing()) {
        statements[function->index] = statement;
      }
    }
  }
  return statements;
}

Statements Effective(Statements statements, const StkFunctionTable& table) {
  for (const auto& function : table.Functions()) {
    std::optional<Statement>& statement = statements[function->index];
    if (statement && !function->Is(FN_RECURSIVE)) {
      statement->depth = kNoDepth;
    }
    if (statement && statement->StatesNothing()) {
      statement.reset();
    }
  }
  return statements;
}

LiteralFile::LiteralFile(std::string_view text, const LiteralChoices& choices,
                         const StkFunctionTable& table)
    : stated(table.Count()), librarySizes(table.Count()), choices_(choices) {
  std::vector<bool> taken(table.Count());
  for (const std::string& line : LiteralLines(text)) {
    const LiteralLine read = ReadLiterally(line, choices.kind, table, taken);
    if (!read.error.empty()) {
      const bool kept = choices.kind == SpecificationKind::kSystemFile &&
                        (read.error == "W9410" || read.error == "W9418");
      hasStray |= !kept && line.find(',') != std::string::npos;
      if (!GoesOnAfter(read.error)) {
        return;
      }
    } else if (read.statesSomething) {
      taken[read.function->index] = true;
      Apply(read);
    }
  }
}

bool LiteralFile::GoesOnAfter(const std::string& error) {
  const bool unknownName = error == "W9410" || error == "W9418";
  if (choices_.kind == SpecificationKind::kLibraryTable) {
    if (!unknownName) {
      errors.emplace_back("W9428");
    }
    return unknownName;
  }
  const bool system = choices_.kind == SpecificationKind::kSystemFile;
  if (system && unknownName) {
    return true;
  }
  const bool givesUp = system && choices_.fromCommandLine;
  errors.push_back(givesUp ? "W9429" : error);
  if (givesUp || choices_.answer == BoxAnswer::kAbort) {
    stated.assign(stated.size(), std::nullopt);
    return false;
  }
  return true;
}

void LiteralFile::Apply(const LiteralLine& line) {
  const uint32_t index = line.function->index;
  if (choices_.kind != SpecificationKind::kLibraryTable) {
    stated[index] = Statement{line.margin, line.depth, Indices(line.callees)};
  } else if (line.margin != kNoMargin && !line.function->Is(FN_DEFINED)) {
    librarySizes[index] = line.margin;
  }
}

}  // namespace velkor::testing
