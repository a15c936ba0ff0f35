#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velkor {

// Texts between UTF-8, in which everything outside of windows/ holds names, arguments and the
// environment, and the system's own units of 16 bits. Half a surrogate pair, which a file name may
// hold, stands in UTF-8 as the three bytes that it would have as a character, so that every name
// leads back to itself.

// None when the bytes are no such text.
std::optional<std::wstring> ToWide(std::string_view utf8);
std::string FromWide(std::wstring_view wide);

}  // namespace velkor
