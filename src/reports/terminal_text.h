#pragma once

#include <string>
#include <string_view>

namespace velkor::reports {

// UTF-8 as one line that a terminal shows and does not obey: each line break is a blank (CR LF
// is one), any other control character but the tab is U+FFFD.
std::string OneLine(std::string_view utf8);

// Whether that changes nothing, for most texts: one of ASCII alone.
bool IsPlainLine(std::string_view text);

// A name as one line, cut to what a column of a screen bears.
std::string CutName(std::string_view utf8);

// Characters of well-formed UTF-8.
size_t CharacterCount(std::string_view utf8);
// The first ones, or all where there are fewer.
std::string_view FirstCharacters(std::string_view utf8, size_t count);

}  // namespace velkor::reports
