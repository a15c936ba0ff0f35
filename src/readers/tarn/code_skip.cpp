#include "readers/tarn/code_skip.h"

#include <bit>
#include <cstring>

#include "platform/byte_block.h"
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

// What a call that matters names: a runtime helper or a bank switch stub.
bool IsStoredTarget(std::string_view target) {
  return target.starts_with('[') || target.starts_with("!_@") || target.starts_with("!@") ||
         target.starts_with("!b");
}

// Of a line whose first word begins with "b" or "c": whether it is a bank switch stub's label, the
// segment directive "cseg" or, its target being what it should, one of the calls.
bool MayStoreCall(std::string_view line, size_t word, size_t target) {
  const char second = word + 1 < line.size() ? line[word + 1] : '\0';
  const bool isCall = second == (line[word] == 'b' ? 'r' : 'a');
  return second == 's' || second == 'S' || (isCall && IsStoredTarget(line.substr(target)));
}

bool IsPlain(std::string_view line) {
  if (line.starts_with(';')) {  // a comment, or the heading of the code information block
    return line.size() < 3 || line[2] != '*';
  }
  const size_t word = SkipBlanks(line, 0);
  if (word == line.size()) {
    return true;
  }
  if (kLabelOrSegment.Has(line[word])) {
    return false;
  }
  const size_t second = SkipBlanks(line, SkipWord(line, word));
  if (second + 1 < line.size() && (line[second + 1] | 0x20) == 's') {  // "CSEG"
    return false;
  }
  return !kCallOrStub.Has(line[word]) || !MayStoreCall(line, word, second);
}

}  // namespace

SkippedLines SkipPlainCode(std::string_view text, uint32_t maxLines, size_t maxLength) {
  SkippedLines skipped;
  for (size_t block = 0; block + kByteBlock <= text.size(); block += kByteBlock) {
    uint64_t lineEnds = FindInBlock(text.data() + block, '\n');
    for (; lineEnds != 0; lineEnds &= lineEnds - 1) {
      const size_t end = block + static_cast<size_t>(std::countr_zero(lineEnds));
      const std::string_view line = text.substr(skipped.bytes, end - skipped.bytes);
      if (skipped.lines == maxLines || line.size() > maxLength || !IsPlain(line)) {
        return skipped;
      }
      skipped.bytes = end + 1;
      ++skipped.lines;
    }
  }
  return skipped;
}

}  // namespace velkor
