#pragma once

#include <string>
#include <string_view>

namespace velkor::manual {

// Texts for the man page macros.

// As it stands, whatever it holds: no character or line begins a request.
std::string Roff(std::string_view text);
// The same, in lines of a terminal's width.
std::string Lines(std::string_view text);
std::string Bold(std::string_view text);
std::string Italic(std::string_view text);
// A first letter of upper case, unless the text begins with the name of a file, and a full stop.
std::string Sentence(std::string_view text);

}  // namespace velkor::manual
