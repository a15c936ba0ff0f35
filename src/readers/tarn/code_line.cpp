#include "readers/tarn/code_line.h"

namespace velkor {

namespace {

constexpr CharacterSet kBracketEnd{"]"};
constexpr size_t kKeywordLength = 4;

size_t SkipBlanksFrom(std::string_view text, size_t position) {
  while (position < text.size() && kBlanks.Has(text[position])) {
    ++position;
  }
  return position;
}

size_t WordEnd(std::string_view text, size_t position) {
  while (position < text.size() && !kBlanks.Has(text[position])) {
    ++position;
  }
  return position;
}

bool IsLetter(char character, char lowerCase) {
  return (character | 0x20) == lowerCase;
}

// "SEG" from the second character on, in any letter case.
bool EndsWithSeg(std::string_view word) {
  return IsLetter(word[1], 's') && IsLetter(word[2], 'e') && IsLetter(word[3], 'g');
}

// A word counts when something ends it, and no NUL ended the text before.
bool IsWhole(const TextLine& line, size_t wordEnd) {
  const bool ended = wordEnd < line.text.size() || line.length == line.text.size();
  return ended && line.text.substr(0, wordEnd).find('\0') == std::string_view::npos;
}

void AddKeyword(const TextLine& line, size_t start, size_t end, SegmentDirective& directive) {
  if (end - start != kKeywordLength) {
    return;
  }
  const std::string_view word = line.text.substr(start, kKeywordLength);
  const bool named = word[0] == 'B' || word[0] == 'C' || word[0] == 'D';
  const bool code = IsLetter(word[0], 'c');
  if ((named || code) && EndsWithSeg(word) && IsWhole(line, end)) {
    directive.segment = directive.segment || named;
    directive.code = directive.code || code;
  }
}

bool IsStubName(std::string_view text) {
  return text.size() > 3 && text.starts_with("bs_") && (text[3] == 'F' || text[3] == 'S');
}

bool IsCodeLabel(std::string_view label) {
  return IsStubName(label) || (label.size() > 1 && label[0] == '_' && label[1] != '@');
}

bool IsHelperName(std::string_view text) {
  return text.starts_with("_@") || text.starts_with("@@");
}

std::optional<CodeCall> ParseDirectCall(StkLineScanner& scanner) {
  using Target = CodeCall::Target;
  std::string_view target;
  if (!scanner.Expect('!') || !scanner.Token(kBlanksOrLineEnd, target)) {
    return std::nullopt;
  }
  if (IsStubName(target)) {
    return CodeCall{target, Target::kStub};
  }
  if (IsHelperName(target)) {
    return CodeCall{target.substr(2), Target::kHelper};
  }
  return target.starts_with('_') ? std::optional(CodeCall{CalledSymbol(target), Target::kSymbol})
                                 : std::nullopt;
}

std::optional<CodeCall> ParseTableCall(StkLineScanner& scanner) {
  std::string_view target;
  if (!scanner.Expect('[') || !scanner.Token(kBracketEnd, target) || !IsHelperName(target)) {
    return std::nullopt;
  }
  const std::string_view helper = target.substr(2);
  if (helper == "bcall" || helper == "bcals") {
    return std::nullopt;
  }
  return CodeCall{helper, CodeCall::Target::kHelper};
}

bool MayBeCall(std::string_view text) {
  const size_t start = SkipBlanksFrom(text, 0);
  return start < text.size() && (text[start] == 'c' ? text.substr(start).starts_with("call")
                                                    : text.substr(start).starts_with("br"));
}

}  // namespace

SegmentDirective FindSegmentDirective(const TextLine& line) {
  SegmentDirective directive;
  const std::string_view text = line.text;
  if (text.starts_with(';')) {
    return directive;
  }
  const size_t first = SkipBlanksFrom(text, 0);
  const size_t firstEnd = WordEnd(text, first);
  AddKeyword(line, first, firstEnd, directive);
  const size_t second = SkipBlanksFrom(text, firstEnd);
  if (second < text.size() && second + kKeywordLength <= text.size() &&
      IsLetter(text[second + 1], 's')) {
    AddKeyword(line, second, WordEnd(text, second), directive);
  }
  return directive;
}

std::string_view FindCodeLabel(const TextLine& line) {
  const size_t start = SkipBlanksFrom(line.text, 0);
  if (start == line.text.size() || (line.text[start] != '_' && line.text[start] != 'b')) {
    return {};
  }
  const size_t colon = line.text.find(':', start);
  if (colon == std::string_view::npos) {
    return {};
  }
  const std::string_view label = line.text.substr(start, colon - start);
  return IsCodeLabel(label) && label.find('\0') == std::string_view::npos ? label
                                                                          : std::string_view();
}

std::optional<CodeCall> FindCodeCall(const TextLine& line, StkLineScanner& scanner) {
  if (!MayBeCall(line.text)) {
    return std::nullopt;
  }
  scanner.SetLine(line);
  std::string_view mnemonic;
  if (!scanner.SkipBlanks() || !scanner.Token(kBlanks, mnemonic) || !scanner.SkipBlanks()) {
    return std::nullopt;
  }
  if (mnemonic == "callt") {
    return ParseTableCall(scanner);
  }
  return mnemonic == "call" || mnemonic == "callf" || mnemonic == "br" ? ParseDirectCall(scanner)
                                                                       : std::nullopt;
}

std::string_view CalledSymbol(std::string_view target) {
  return target.substr(0, target.find(';'));
}

bool IsInformationHeading(const TextLine& line) {
  return line.text.starts_with("; *** Code Information ***");
}

}  // namespace velkor
