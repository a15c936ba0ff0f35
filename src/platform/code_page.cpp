#include "platform/code_page.h"

#include <algorithm>
#include <cstring>

#include "platform/letter_case.h"

namespace velkor {
namespace {

// Bytes that begin no well-formed character compare after every character of UTF-8.
constexpr char32_t kAfterUnicode = 0x110000;

unsigned char ByteAt(std::string_view text, size_t position) {
  return static_cast<unsigned char>(text[position]);
}

bool IsBetween(unsigned char byte, unsigned char low, unsigned char high) {
  return byte >= low && byte <= high;
}

// Length of the sequence that a lead byte begins, with the bounds of the byte after it (they keep
// out overlong forms, surrogates and what lies beyond Unicode); 1 for anything else.
struct Utf8Lead {
  size_t length;
  unsigned char low;
  unsigned char high;
};

Utf8Lead LookAtLead(unsigned char lead) {
  if (IsBetween(lead, 0xC2, 0xDF)) {
    return {2, 0x80, 0xBF};
  }
  if (IsBetween(lead, 0xE0, 0xEF)) {
    return {3, static_cast<unsigned char>(lead == 0xE0 ? 0xA0 : 0x80),
            static_cast<unsigned char>(lead == 0xED ? 0x9F : 0xBF)};
  }
  if (IsBetween(lead, 0xF0, 0xF4)) {
    return {4, static_cast<unsigned char>(lead == 0xF0 ? 0x90 : 0x80),
            static_cast<unsigned char>(lead == 0xF4 ? 0x8F : 0xBF)};
  }
  return {1, 0, 0};
}

size_t Utf8Length(std::string_view text, size_t position) {
  const Utf8Lead lead = LookAtLead(ByteAt(text, position));
  if (lead.length == 1 || text.size() - position < lead.length ||
      !IsBetween(ByteAt(text, position + 1), lead.low, lead.high)) {
    return 1;
  }
  for (size_t i = 2; i < lead.length; ++i) {
    if (!IsBetween(ByteAt(text, position + i), 0x80, 0xBF)) {
      return 1;
    }
  }
  return lead.length;
}

size_t ShiftJisLength(std::string_view text, size_t position) {
  const unsigned char lead = ByteAt(text, position);
  if (!(IsBetween(lead, 0x81, 0x9F) || IsBetween(lead, 0xE0, 0xFC)) || text.size() - position < 2) {
    return 1;
  }
  const unsigned char trail = ByteAt(text, position + 1);
  return IsBetween(trail, 0x40, 0x7E) || IsBetween(trail, 0x80, 0xFC) ? 2 : 1;
}

char32_t DecodeUtf8(std::string_view character) {
  if (character.size() == 1) {
    const unsigned char byte = ByteAt(character, 0);
    return byte < 0x80 ? byte : kAfterUnicode + byte;
  }
  char32_t value = ByteAt(character, 0) & (0x7FU >> character.size());
  for (size_t i = 1; i < character.size(); ++i) {
    value = (value << 6) | (ByteAt(character, i) & 0x3FU);
  }
  return value;
}

char32_t DecodeShiftJis(std::string_view character) {
  const char32_t first = ByteAt(character, 0);
  return character.size() == 1 ? first : (first << 8) | ByteAt(character, 1);
}

// Hands out the keys of a text's characters, letter case removed.
class FoldedKeys {
 public:
  FoldedKeys(const CodePage& codePage, std::string_view upper, std::string_view text)
      : codePage_(codePage), upper_(upper), text_(text) {}

  bool AtEnd() const { return position_ >= text_.size(); }

  char32_t Next() {
    const unsigned char byte = ByteAt(text_, position_);
    if (byte < 0x80) {
      ++position_;
      return UpperAscii(byte);
    }
    if (codePage_.GetKind() == CodePage::Kind::kSingleByte) {
      ++position_;
      return ByteAt(upper_, byte);
    }
    const size_t length = codePage_.CharLength(text_, position_);
    const std::string_view character = text_.substr(position_, length);
    position_ += length;
    return codePage_.GetKind() == CodePage::Kind::kUtf8 ? UpperUnicode(DecodeUtf8(character))
                                                        : UpperShiftJis(DecodeShiftJis(character));
  }

 private:
  const CodePage& codePage_;
  const std::string_view upper_;
  const std::string_view text_;
  size_t position_ = 0;
};

int CompareShiftJis(std::string_view left, std::string_view right) {
  size_t position = 0;  // the same in both: everything before it is equal
  while (position < left.size() && position < right.size()) {
    const size_t length = ShiftJisLength(left, position);
    const char32_t leftKey = DecodeShiftJis(left.substr(position, length));
    const char32_t rightKey =
        DecodeShiftJis(right.substr(position, ShiftJisLength(right, position)));
    if (leftKey != rightKey) {
      return leftKey < rightKey ? -1 : 1;
    }
    position += length;
  }
  return left.size() == right.size() ? 0 : left.size() < right.size() ? -1 : 1;
}

}  // namespace

size_t CodePage::CharLength(std::string_view text, size_t position) const {
  if (position >= text.size()) {
    return 0;
  }
  if (ByteAt(text, position) < 0x80 || kind_ == Kind::kSingleByte) {
    return 1;
  }
  return kind_ == Kind::kUtf8 ? Utf8Length(text, position) : ShiftJisLength(text, position);
}

int CodePage::Compare(std::string_view left, std::string_view right) const {
  if (kind_ == Kind::kShiftJis) {
    return CompareShiftJis(left, right);
  }
  return left.compare(right);
}

int CodePage::CompareIgnoreCase(std::string_view left, std::string_view right) const {
  FoldedKeys leftKeys(*this, upper_, left);
  FoldedKeys rightKeys(*this, upper_, right);
  while (!leftKeys.AtEnd() && !rightKeys.AtEnd()) {
    const char32_t leftKey = leftKeys.Next();
    const char32_t rightKey = rightKeys.Next();
    if (leftKey != rightKey) {
      return leftKey < rightKey ? -1 : 1;
    }
  }
  return leftKeys.AtEnd() == rightKeys.AtEnd() ? 0 : leftKeys.AtEnd() ? -1 : 1;
}

uint32_t CodePage::HashIgnoreCase(std::string_view text) const {
  constexpr uint32_t kOffset = 2166136261U;
  constexpr uint32_t kPrime = 16777619U;
  uint32_t hash = kOffset;
  FoldedKeys keys(*this, upper_, text);
  while (!keys.AtEnd()) {
    for (char32_t rest = keys.Next(); rest != 0; rest >>= 8) {
      hash = (hash ^ (rest & 0xFFU)) * kPrime;
    }
    hash *= kPrime;
  }
  return hash;
}

bool CodePage::IsBlank(std::string_view text, size_t position) const {
  const size_t length = CharLength(text, position);
  if (length == 0) {
    return false;
  }
  const std::string_view character = text.substr(position, length);
  if (length == 1) {
    const unsigned char byte = ByteAt(character, 0);
    return byte == ' ' || IsBetween(byte, '\t', '\r');
  }
  return character == (kind_ == Kind::kUtf8 ? "\xE3\x80\x80" : "\x81\x40");
}

size_t CodePage::CutLength(std::string_view text, size_t limit) const {
  if (limit >= text.size()) {
    return text.size();
  }
  if (kind_ == Kind::kSingleByte) {
    return limit;
  }
  // A lead byte of UTF-8 is never inside another character, so the last bytes tell all. In 932
  // only a walk from the start knows which bytes begin a character.
  constexpr size_t kLongestUtf8 = 4;
  size_t position = kind_ == Kind::kUtf8 && limit >= kLongestUtf8 ? limit - kLongestUtf8 + 1 : 0;
  while (position < limit) {
    const size_t length = CharLength(text, position);
    if (position + length > limit) {
      return position;
    }
    position += length;
  }
  return position;
}

}  // namespace velkor
