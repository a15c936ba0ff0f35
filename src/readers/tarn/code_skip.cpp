#include "readers/tarn/code_skip.h"

#include <bit>
#include <cstring>

#include "platform/byte_block.h"
#include "readers/tarn/code_line.h"
#include "readers/tarn/line_scanner.h"

namespace velkor {

namespace {

constexpr CharacterSet kLabelOrSegment{"_BCD"};
constexpr CharacterSet kCallOrStub{"bc"};

size_t SkipBlanks(std::string_view line, size_t position) {
  while (position < line.size() && kBlanks.Has(line[position])) {
    ++position;
  }
  return position;
}

// Whether one of eight bytes is this one: the lowest bit set, if any, is in the first such byte.
uint64_t FindByte(uint64_t bytes, uint8_t byte) {
  constexpr uint64_t kEach = 0x0101010101010101;
  const uint64_t difference = bytes ^ (kEach * byte);
  return (difference - kEach) & ~difference & (kEach * 0x80);
}

// Words are short and of any length: eight bytes at once cost less than as many branches that
// cannot be foreseen.
size_t SkipWord(std::string_view line, size_t position) {
  if constexpr (std::endian::native == std::endian::little) {
    uint64_t bytes = 0;
    while (position + sizeof bytes <= line.size()) {
      std::memcpy(&bytes, line.data() + position, sizeof bytes);
      const uint64_t blanks = FindByte(bytes, ' ') | FindByte(bytes, '\t');
      if (blanks != 0) {
        return position + static_cast<size_t>(std::countr_zero(blanks)) / 8;
      }
      position += sizeof bytes;
    }
  }
  while (position < line.size() && !kBlanks.Has(line[position])) {
    ++position;
  }
  return position;
}

// Of the lines of a text, block by block: whether a blank, any byte and an "s" stand in it. Where
// they do not, its second word is no segment directive.
class SecondLetters {
 public:
  void EnterBlock(const char* block) {
    const BlanksAndLetters found = FindBlanksAndLetters(block, 's');
    ahead_ = ahead_ || left_ != 0;
    left_ = (found.blanks << 2 | before_) & found.letters;
    before_ = found.blanks >> (kByteBlock - 2);
  }
  // Of the line that ends at this bit of the block.
  bool TakeLine(int end) {
    const uint64_t inLine = left_ & ((uint64_t{2} << end) - 1);
    const bool has = ahead_ || inLine != 0;
    ahead_ = false;
    left_ ^= inLine;
    return has;
  }

 private:
  uint64_t left_ = 0;    // the block's, but for lines taken
  uint64_t before_ = 0;  // what the blanks at the end of the block before add
  bool ahead_ = false;   // one in the line's part in blocks before
};

// What a call that is not passed over names: a runtime helper or a bank switch stub.
bool IsStoredTarget(std::string_view target) {
  return target.starts_with('[') || target.starts_with("!_@") || target.starts_with("!@") ||
         target.starts_with("!b");
}

enum class Plainness : uint8_t {
  kPlain,  // says nothing
  kCall,   // calls a symbol, whose "!" stands at the target, and says nothing else
  kOther,  // has to be looked at closely
};

// Of a line whose first word begins with "b" or "c". What is not plain may be a bank switch stub's
// label, the segment directive "cseg" or a call that stores something.
Plainness PlainnessFrom(std::string_view line, size_t word, size_t wordEnd, size_t target) {
  const char second = word + 1 < line.size() ? line[word + 1] : '\0';
  if (second == 's' || second == 'S') {
    return Plainness::kOther;
  }
  if (second != (line[word] == 'b' ? 'r' : 'a')) {
    return Plainness::kPlain;
  }
  if (IsStoredTarget(line.substr(target))) {
    return Plainness::kOther;
  }
  if (!line.substr(target).starts_with("!_")) {
    return Plainness::kPlain;
  }
  const std::string_view mnemonic = line.substr(word, wordEnd - word);
  const bool calls = mnemonic == "call" || mnemonic == "br" || mnemonic == "callf";
  if (!calls) {
    return Plainness::kPlain;
  }
  return line.find('\0') == std::string_view::npos ? Plainness::kCall : Plainness::kOther;
}

Plainness PlainnessOf(std::string_view line, size_t& target) {
  if (line.starts_with(';')) {  // a comment, or the heading of the code information block
    return line.size() < 3 || line[2] != '*' ? Plainness::kPlain : Plainness::kOther;
  }
  const size_t word = SkipBlanks(line, 0);
  if (word == line.size()) {
    return Plainness::kPlain;
  }
  if (kLabelOrSegment.Has(line[word])) {
    return Plainness::kOther;
  }
  const size_t wordEnd = SkipWord(line, word);
  const size_t second = SkipBlanks(line, wordEnd);
  if (second + 1 < line.size() && (line[second + 1] | 0x20) == 's') {  // "CSEG"
    return Plainness::kOther;
  }
  if (!kCallOrStub.Has(line[word])) {
    return Plainness::kPlain;
  }
  target = second;
  return PlainnessFrom(line, word, wordEnd, second);
}

constexpr CharacterSet kSecondOfCallOrStub{"arsS"};
constexpr CharacterSet kToBeLookedAt{"_BCDbc; \t\n\r"};

// Of a line with its line end, no segment directive: an instruction that calls nothing.
bool IsPlainInstruction(const char* line) {
  const char* const word = line + (line[0] == '\t' ? 1 : 0);
  return !kToBeLookedAt.Has(word[0]) ||
         (kCallOrStub.Has(word[0]) && !kSecondOfCallOrStub.Has(word[1]));
}

std::string_view CalledAt(std::string_view line, size_t target) {
  line.remove_suffix(line.ends_with('\r') ? 1 : 0);
  return CalledSymbol(line.substr(0, SkipWord(line, target)).substr(target + 1));
}

}  // namespace

void SkipPlainCode(std::string_view text, uint32_t maxLines, size_t maxLength,
                   SkippedLines& skipped) {
  size_t bytes = 0;
  uint32_t lines = 0;
  skipped.calls.clear();
  const auto skipLine = [&](std::string_view line) {
    size_t target = 0;
    const Plainness plainness = PlainnessOf(line, target);
    if (plainness == Plainness::kCall) {
      skipped.calls.push_back({CalledAt(line, target), lines + 1});
    }
    return plainness != Plainness::kOther;
  };
  bool skips = true;
  SecondLetters seconds;
  for (size_t block = 0; skips && block + kByteBlock <= text.size(); block += kByteBlock) {
    uint64_t lineEnds = FindInBlock(text.data() + block, '\n');
    seconds.EnterBlock(text.data() + block);
    for (; lineEnds != 0; lineEnds &= lineEnds - 1) {
      const int endInBlock = std::countr_zero(lineEnds);
      const size_t end = block + static_cast<size_t>(endInBlock);
      const std::string_view line(text.data() + bytes, end - bytes);
      const bool mayBeSegment = seconds.TakeLine(endInBlock);
      skips = lines < maxLines && line.size() <= maxLength &&
              ((!mayBeSegment && IsPlainInstruction(line.data())) || skipLine(line));
      if (!skips) {
        break;
      }
      bytes = end + 1;
      ++lines;
    }
  }
  skipped.bytes = bytes;
  skipped.lines = lines;
}

}  // namespace velkor
