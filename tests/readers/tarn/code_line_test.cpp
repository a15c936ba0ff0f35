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
  explicit LiteralTests(const TextLine& line) : line_(line) {}

  SegmentDirective Segment() {
    SegmentDirective directive;
    scanner_.SetLine(line_);
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
    scanner_.SetLine(line_);
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
    scanner_.SetLine(line_);
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
    return scanner_.Token(kBlanksOrLineEnd, target) &&
                   (target.starts_with("bs_F") || target.starts_with("bs_S"))
               ? "stub " + std::string(target)
               : "";
  }

 private:
  const TextLine& line_;
  CodePage page_ = CodePage::Utf8();
  StkLineScanner scanner_{page_};
};

std::string Described(const std::optional<RuntimeCall>& call) {
  return call ? (call->stub ? "stub " : "helper ") + std::string(call->target) : "";
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
  std::mt19937 random(7);
  const CodePage page = CodePage::Utf8();
  StkLineScanner scanner(page);
  size_t found = 0;
  size_t skipped = 0;
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
    ASSERT_EQ(Described(FindRuntimeCall(line, scanner)), call) << text;
    found += (directive.segment ? 1U : 0U) + (call.empty() ? 0U : 1U);
    const bool plain = SkipPlainCode(text + "\n" + std::string(64, ';'), 1, 100).lines == 1;
    ASSERT_FALSE(plain && (expected.segment || expected.code || !call.empty() ||
                           !literal.Label().empty() || IsInformationHeading(line)))
        << text;
    skipped += plain ? 1U : 0U;
  }
  EXPECT_GT(found, 1000U);
  EXPECT_GT(skipped, 50000U);
}

TEST(CodeLine, HelperNamesEndAtAWholeCharacter) {
  const CodePage page = CodePage::ShiftJis();
  StkLineScanner scanner(page);
  const std::string text = "\tcallt [@@\x83\x5Dx]";  // the second byte of the character is "]"
  const std::optional<RuntimeCall> call = FindRuntimeCall({text, text.size()}, scanner);
  ASSERT_TRUE(call.has_value());
  EXPECT_EQ(call->target, "\x83\x5Dx");
}

}  // namespace
}  // namespace velkor
