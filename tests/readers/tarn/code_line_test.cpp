#include "readers/tarn/code_line.h"

#include <gtest/gtest.h>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "readers/tarn/code_skip.h"

namespace velkor {
namespace {

// The tests of a line spelt out with nothing but the scanner's operations.
class LiteralTests {
 public:
  explicit LiteralTests(const TextLine& line) : line_(line) { scanner_.SetLine(line); }

  SegmentDirective Segment() {
    SegmentDirective directive;
    scanner_.ResetCursor();
    if (line_.text.starts_with(';')) {
      return directive;
    }
    std::string_view word;
    for (int i = 0; i < 2 && scanner_.SkipBlanks() && scanner_.Token(kBlanksOrLineEnd, word); ++i) {
      std::string upper(word);
      for (char& character : upper) {
        character =
            character >= 'a' && character <= 'z' ? static_cast<char>(character - 0x20) : character;
      }
      const bool keyword = upper == "BSEG" || upper == "CSEG" || upper == "DSEG";
      directive.segment = directive.segment || (keyword && word[0] == upper[0]);
      directive.code = directive.code || upper == "CSEG";
    }
    return directive;
  }

  std::string_view Label() {
    scanner_.ResetCursor();
    constexpr CharacterSet kColon{":"};
    std::string_view label;
    if (!scanner_.SkipBlanks() || !scanner_.Token(kColon, label)) {
      return {};
    }
    const bool stub = label.starts_with("bs_F") || label.starts_with("bs_S");
    return stub || (label.size() > 1 && label[0] == '_' && label[1] != '@') ? label
                                                                            : std::string_view();
  }

  std::string Call() {
    scanner_.ResetCursor();
    std::string_view mnemonic;
    if (!scanner_.SkipBlanks() || !scanner_.Token(kBlanks, mnemonic) || !scanner_.SkipBlanks()) {
      return {};
    }
    std::string_view target;
    constexpr CharacterSet kBracket{"]"};
    if (mnemonic == "callt") {
      if (!scanner_.Expect('[') || !(scanner_.Match("_@") || scanner_.Match("@@")) ||
          !scanner_.Token(kBracket, target) || target == "bcall" || target == "bcals") {
        return {};
      }
      return "helper " + std::string(target);
    }
    if ((mnemonic != "call" && mnemonic != "callf" && mnemonic != "br") || !scanner_.Expect('!')) {
      return {};
    }
    if (scanner_.Match("_@") || scanner_.Match("@@")) {
      return scanner_.Token(kBlanksOrLineEnd, target) ? "helper " + std::string(target) : "";
    }
    if (!scanner_.Token(kBlanksOrLineEnd, target)) {
      return {};
    }
    if (target.starts_with('_')) {
      return "symbol " + std::string(target.substr(0, target.find(';')));
    }
    const bool stub = target.starts_with("bs_F") || target.starts_with("bs_S");
    return stub ? "stub " + std::string(target) : "";
  }

 private:
  const TextLine& line_;
  CodePage page_ = CodePage::Utf8();
  StkLineScanner scanner_{page_};
};

std::string Described(const std::optional<CodeCall>& call) {
  constexpr const char* kTargets[] = {"helper ", "stub ", "symbol "};
  return call ? kTargets[static_cast<size_t>(call->target)] + std::string(call->name) : "";
}

// Compares on every way of putting up to six pieces together that the generator meets.
TEST(CodeLine, QuickTestsAgreeWithTheLiteralOnes) {
  std::vector<std::string> pieces = {" ", "\t", " ", "\t", " ", "\xE3", std::string(1, '\0')};
  std::istringstream words(
      "CSEG DSEG bsEg BsEg cseg C SEG ; : _ @ b bs_F bs_ S call f t br ! [ ] @@ _@ f mov a,#1 "
      "bcall bcals *");
  for (std::string word; words >> word;) {
    pieces.push_back(word);
  }
  pieces.emplace_back("\tcall !_g");
  std::mt19937 random(7);
  const CodePage page = CodePage::Utf8();
  StkLineScanner scanner(page);
  size_t found = 0;
  size_t skipped = 0;
  size_t called = 0;
  SkippedLines passed;
  for (int round = 0; round < 150000; ++round) {
    std::string text;
    for (auto count = random() % 7; count > 0; --count) {
      text += pieces[random() % pieces.size()];
    }
    const TextLine line{text, text.size() + (random() % 8 == 0 ? 1 : 0)};
    LiteralTests literal(line);
    const SegmentDirective expected = literal.Segment();
    const SegmentDirective directive = FindSegmentDirective(line);
    ASSERT_EQ(directive.segment, expected.segment) << text;
    ASSERT_EQ(directive.code, expected.code) << text;
    ASSERT_EQ(FindCodeLabel(line), literal.Label()) << text;
    const std::string call = literal.Call();
    ASSERT_EQ(Described(FindCodeCall(line, scanner)), call) << text;
    found += (directive.segment ? 1U : 0U) + (call.empty() ? 0U : 1U);
    const std::string code = text + "\n" + std::string(64, ';');
    SkipPlainCode(code, 1, 100, passed);
    const bool plain = passed.lines == 1;
    const std::string symbol =
        passed.calls.empty() ? "" : "symbol " + std::string(passed.calls[0].name);
    // One that is skipped is read whole.
    ASSERT_FALSE(plain && (expected.segment || expected.code ||
                           (line.length == text.size() && symbol != call) ||
                           !literal.Label().empty() || IsInformationHeading(line)))
        << text;
    called += symbol.empty() ? 0U : 1U;
    skipped += plain ? 1U : 0U;
  }
  EXPECT_GT(found, 1000U);
  EXPECT_GT(skipped, 50000U);
  EXPECT_GT(called, 10U);
}

TEST(CodeLine, HelperNamesEndAtAWholeCharacter) {
  const CodePage page = CodePage::ShiftJis();
  StkLineScanner scanner(page);
  const std::string text = "\tcallt [@@\x83\x5Dx]";  // the second byte of the character is "]"
  const std::optional<CodeCall> call = FindCodeCall({text, text.size()}, scanner);
  ASSERT_TRUE(call.has_value());
  EXPECT_EQ(call->name, "\x83\x5Dx");
}

}  // namespace
}  // namespace velkor
