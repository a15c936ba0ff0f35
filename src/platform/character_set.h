#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velkor {

// A set of single bytes over ASCII.
struct SingleByteSet {
  std::string name;
  std::u16string unicode;  // what each byte is; U+FFFD: nothing
  std::string upper;       // each byte's upper-case form in the set
};

enum class KnownSet { kUtf8, kShiftJis, kLatin1, kOther };

// By one of its usual spellings, ignoring letter case, blanks, "-" and "_". None for what can be no
// name.
std::optional<KnownSet> KnownSetOf(std::string_view name);
// As the host knows it; none where it knows none, or one of another kind.
std::optional<SingleByteSet> FindSingleByteSet(std::string_view name);
SingleByteSet Latin1Set();

}  // namespace velkor
