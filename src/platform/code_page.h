#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velkor {

struct SingleByteSet;

// The character set that all texts of one run are bytes of: UTF-8, Shift-JIS (code page 932)
// or a single-byte set. A value, immutable once made, usable from any thread.
//
// A character is one byte, or a whole multibyte character of the set; a byte that does not begin
// a well-formed character counts as a character of its own, so stepping never fails and never
// passes the end of a text. All lengths and positions are bytes.
class CodePage {
 public:
  enum class Kind { kUtf8, kShiftJis, kSingleByte };

  // "utf-8", "932", "shift-jis", "cp1252", "iso-8859-1", ..., ignoring letter case, blanks, "-"
  // and "_"; none for a set that this host cannot convert or that is of another kind.
  static std::optional<CodePage> FromName(std::string_view name);
  // See CharacterSetOfLocale and CharacterSetOfHost; UTF-8 where they name none that is usable.
  static CodePage FromLocale();
  static CodePage OfHost();
  static CodePage Utf8();
  static CodePage ShiftJis();
  static CodePage Latin1();

  Kind GetKind() const { return kind_; }
  const std::string& Name() const { return name_; }

  // Bytes of the character at position; 0 only at the end of the text.
  size_t CharLength(std::string_view text, size_t position) const;
  // Order by character value, letter case included: the order of sorted function lists.
  // In UTF-8 and single-byte sets this is byte order; in 932 every double-byte character is
  // greater than every single-byte one.
  int Compare(std::string_view left, std::string_view right) const;
  // Order ignoring letter case of every letter of the set, not only ASCII: file names.
  int CompareIgnoreCase(std::string_view left, std::string_view right) const;
  bool EqualIgnoreCase(std::string_view left, std::string_view right) const {
    return CompareIgnoreCase(left, right) == 0;
  }
  // Equal for two texts exactly when EqualIgnoreCase holds; same value on every run.
  uint32_t HashIgnoreCase(std::string_view text) const;
  // White space of the C locale (space, \t, \n, \v, \f, \r), and U+3000 in the multibyte sets.
  bool IsBlank(std::string_view text, size_t position) const;

  // The longest length, at most limit, at which text can be cut without cutting a character.
  size_t CutLength(std::string_view text, size_t limit) const;
  // Undecodable bytes show as U+FFFD, escaped bytes of a host path (ByteEscape) as the characters
  // that they are there. Never fails. UTF-8 that is returned is well formed.
  std::string ToUtf8(std::string_view text) const;
  // None when a character has no place in this set.
  std::optional<std::string> FromUtf8(std::string_view utf8) const;

 private:
  CodePage(Kind kind, std::string name);
  explicit CodePage(SingleByteSet set);

  Kind kind_;
  std::string name_;
  // As in SingleByteSet; empty for other sets.
  std::u16string unicode_;
  std::string upper_;
};

}  // namespace velkor
