#include "platform/code_page.h"

#include <utility>

#include "platform/byte_escape.h"
#include "platform/character_set.h"
#include "platform/characters.h"
#include "platform/charset_converter.h"
#include "platform/code_page_conversion.h"
#include "platform/host_locale.h"
#include "platform/letter_case.h"

namespace velkor {
namespace {

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

CodePage::CodePage(Kind kind, std::string name) : kind_(kind), name_(std::move(name)) {}

CodePage::CodePage(SingleByteSet set)
    : kind_(Kind::kSingleByte),
      name_(std::move(set.name)),
      unicode_(std::move(set.unicode)),
      upper_(std::move(set.upper)) {}

std::optional<CodePage> CodePage::FromName(std::string_view name) {
  const std::optional<KnownSet> known = KnownSetOf(name);
  if (!known) {
    return std::nullopt;
  }
  switch (*known) {
    case KnownSet::kUtf8:
      return Utf8();
    case KnownSet::kShiftJis:
      return ShiftJis();
    case KnownSet::kLatin1:
      return Latin1();
    case KnownSet::kOther:
      break;
  }
  std::optional<SingleByteSet> set = FindSingleByteSet(name);
  return set ? std::optional(CodePage(std::move(*set))) : std::nullopt;
}

CodePage CodePage::FromLocale() {
  const std::optional<CodePage> page = FromName(CharacterSetOfLocale());
  return page ? *page : Utf8();
}

CodePage CodePage::OfHost() {
  const std::optional<CodePage> page = FromName(CharacterSetOfHost());
  return page ? *page : Utf8();
}

CodePage CodePage::Utf8() {
  return CodePage(Kind::kUtf8, "UTF-8");
}

CodePage CodePage::ShiftJis() {
  return CodePage(Kind::kShiftJis, "CP932");
}

CodePage CodePage::Latin1() {
  return CodePage(Latin1Set());
}

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
  if (position >= text.size()) {
    return false;
  }
  const unsigned char byte = ByteAt(text, position);
  if (byte < 0x80) {
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
  }
  const std::string_view character = text.substr(position, CharLength(text, position));
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

std::string CodePage::ToUtf8(std::string_view text) const {
  if (IsAscii(text) && text.find(ByteEscape::kSubstitute) == std::string_view::npos) {
    return std::string(text);
  }
  std::string result;
  result.reserve(text.size());
  std::optional<CharsetConverter> converter;
  if (kind_ == Kind::kShiftJis) {
    converter.emplace("CP932", "UTF-8");
  }
  for (size_t position = 0, length = 0; position < text.size(); position += length) {
    length = AppendEscaped(text, position, result);
    if (length != 0) {
      continue;
    }
    length = CharLength(text, position);
    const std::string_view character = text.substr(position, length);
    if (converter) {
      AppendConverted(character, *converter, result);
    } else if (kind_ == Kind::kSingleByte) {
      AppendUtf8(unicode_[static_cast<unsigned char>(character.front())], result);
    } else {
      AppendWellFormed(character, result);
    }
  }
  return result;
}

std::optional<std::string> CodePage::FromUtf8(std::string_view utf8) const {
  if (IsAscii(utf8)) {
    return std::string(utf8);
  }
  if (kind_ == Kind::kShiftJis) {
    return Utf8ToShiftJis(utf8);
  }
  if (kind_ == Kind::kSingleByte) {
    return Utf8ToSingleByte(utf8, unicode_);
  }
  return IsWellFormedUtf8(utf8) ? std::optional(std::string(utf8)) : std::nullopt;
}

}  // namespace velkor
