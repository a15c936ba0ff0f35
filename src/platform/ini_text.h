#pragma once

#include <cstddef>
#include <string_view>

#include "platform/code_page.h"

namespace velkor {

// The pieces of an INI line, for everything that reads such files. Views into the given text.

// Without the blanks around it (space, \t, \v, \f).
std::string_view TrimIniText(std::string_view text);
// Without one pair of equal quotes around it.
std::string_view UnquoteIniValue(std::string_view value);
// Position of the last "]" that is a character of its own; npos when there is none.
size_t FindLastIniBracket(std::string_view line, const CodePage& codePage);

}  // namespace velkor
